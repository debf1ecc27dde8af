#include "plugin/shell/HostWindow.h"

#include <windows.h>

static BOOL CALLBACK TakeFirstOwnWindow(HWND window, LPARAM result)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId())
        return TRUE;
    *reinterpret_cast<HWND*>(result) = window;
    return FALSE;
}

WId FindHostWindow()
{
    HWND window = nullptr;
    EnumWindows(TakeFirstOwnWindow, reinterpret_cast<LPARAM>(&window));
    return reinterpret_cast<WId>(window);
}
