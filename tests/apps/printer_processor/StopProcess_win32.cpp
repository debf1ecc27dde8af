#include "StopProcess.h"

void StopProcess(uint32_t, StopKind) {}

bool CanStopProcesses()
{
    return false;
}
