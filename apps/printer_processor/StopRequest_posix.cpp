#include "apps/printer_processor/StopRequest.h"

#include <csignal>
#include <initializer_list>

std::atomic<bool> StopRequest::sIsMade{false};

StopRequest::StopRequest()
{
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_handler = [](int) { sIsMade = true; };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}
