#include "StopProcess.h"

#include <csignal>

void StopProcess(uint32_t processID, StopKind kind)
{
    kill(static_cast<pid_t>(processID), kind == StopKind::Terminate ? SIGTERM : SIGINT);
}

bool CanStopProcesses()
{
    return true;
}
