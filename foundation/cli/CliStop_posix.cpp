#include "foundation/cli/CliStop.h"

#include <csignal>
#include <initializer_list>

std::atomic<bool> CliStop::sIsAskedFor{false};

CliStop::CliStop()
{
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    action.sa_handler = [](int) { sIsAskedFor = true; };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}
