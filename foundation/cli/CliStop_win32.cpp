#include "foundation/cli/CliStop.h"

#include <windows.h>

std::atomic<bool> CliStop::sIsAskedFor{false};

CliStop::CliStop()
{
    // Called on a thread of the system's; what is not handled ends the process.
    const auto onControl = [](DWORD) -> BOOL { return sIsAskedFor.exchange(true) ? FALSE : TRUE; };
    static const PHANDLER_ROUTINE handler = onControl;
    SetConsoleCtrlHandler(handler, TRUE);
}
