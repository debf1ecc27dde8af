#include "FreshProcess.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

namespace
{
// A number of kilobytes from this process's status.
double GetStatus(const std::string& name)
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

double GetProcessorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

FreshProcess::Cost Measure(const std::function<void()>& step)
{
    malloc_trim(0);                                 // what was freed before would be taken again unseen
    std::ofstream("/proc/self/clear_refs") << "5";  // the highest is the present again
    const double before = GetStatus("VmRSS");
    const double start = GetProcessorTime();
    step();
    return {GetProcessorTime() - start, GetStatus("VmHWM") - before, GetStatus("VmRSS") - before};
}
}  // namespace

FreshProcess::Cost FreshProcess::Run(const std::function<void()>& step)
{
    Cost cost;
    int ends[2];
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        cost = Measure(step);
        const bool isTold = write(ends[1], &cost, sizeof cost) == sizeof cost;
        _exit(isTold ? 0 : 1);
    }
    close(ends[1]);
    if (child < 0 || read(ends[0], &cost, sizeof cost) != sizeof cost)
        std::abort();
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return cost;
}
