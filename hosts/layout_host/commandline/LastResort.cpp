#include "hosts/layout_host/commandline/LastResort.h"

#include <csignal>
#include <cstring>

#include <unistd.h>

// Only what a signal handler may call.
static void EndProcess(int)
{
    const char* report = "{\"result\": \"failed\", \"error\": \"The program did not end by itself.\"}\n";
    [[maybe_unused]] const ssize_t written = write(STDOUT_FILENO, report, std::strlen(report));
    _exit(1);
}

LastResort::LastResort(int seconds)
{
    std::signal(SIGALRM, EndProcess);
    alarm(static_cast<unsigned>(seconds + cGrace));
}

LastResort::~LastResort()
{
    alarm(0);
}
