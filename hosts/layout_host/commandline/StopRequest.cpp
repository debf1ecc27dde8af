#include "hosts/layout_host/commandline/StopRequest.h"

#include <csignal>

static volatile std::sig_atomic_t isMade = 0;

static void OnSignal(int)
{
    isMade = 1;
}

StopRequest::StopRequest()
{
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
}

bool StopRequest::IsMade()
{
    return isMade != 0;
}
