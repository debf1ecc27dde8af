#include "apps/printer_processor/StopRequest.h"

#include <windows.h>

std::atomic<bool> StopRequest::sIsMade{false};

StopRequest::StopRequest()
{
    // Called on a thread of the system's. Once it has been told of an end that can't be held up, the process
    // ends when this returns; the time until then is the main thread's.
    const auto onControl = [](DWORD kind) -> BOOL {
        sIsMade = true;
        if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT)
            Sleep(cGrace);
        return TRUE;
    };
    static const PHANDLER_ROUTINE handler = onControl;
    SetConsoleCtrlHandler(handler, TRUE);
}
