#pragma once

#include <cstdio>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

// A number of kilobytes from this process's status.
inline double GetStatus(const std::string& name)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    double number = 0;
    while (status >> word) {
        if (word == name + ":" && status >> number)
            break;
    }
    return number;
}

// Calls `load` in a process of its own and prints how much memory it took at its highest beside what the
// result, which stays, takes.
template <typename Load>
void ReportMemory(const char* label, Load load)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        malloc_trim(0);                                 // what was freed before would be taken again unseen
        std::ofstream("/proc/self/clear_refs") << "5";  // the highest is the present again
        const double before = GetStatus("VmRSS");
        load();
        const double highest = GetStatus("VmHWM") - before;
        const double kept = GetStatus("VmRSS") - before;
        std::printf("%s: highest %.0f kB, kept %.0f kB, ratio %.2f\n", label, highest, kept, highest / kept);
        std::fflush(stdout);
        _exit(0);
    }
    waitpid(child, nullptr, 0);
}
