#include "PrinterProcessor.h"

#include <windows.h>

// Both come as the break key: a process of a group of its own takes no Ctrl-C.
void StopProcess(uint32_t processID, StopKind)
{
    GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, processID);
}

// The break key reaches the processes of a group on one console.
void PrepareForStop(QProcess& process)
{
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments* arguments) { arguments->flags |= CREATE_NEW_PROCESS_GROUP; });
}
