#include "hosts/indesign/bridge/ApplicationWindow.h"

#include <winsock2.h>

#include <iphlpapi.h>
#include <vector>

// `own` is the helper's first top-level window, which the plug-in takes for that of its host: it shows
// nothing, is owned by the application's window, and owns the dialogs.
struct ApplicationWindow::Windows
{
    HWND application = nullptr;
    HWND own = nullptr;

    ~Windows() { DestroyWindow(own); }
};

namespace
{
DWORD FindProcess(uint16_t port)
{
    DWORD size = 0;
    GetExtendedTcpTable(nullptr, &size, FALSE, AF_INET, TCP_TABLE_OWNER_PID_ALL, 0);
    std::vector<char> bytes(size + 4096);
    size = static_cast<DWORD>(bytes.size());
    if (GetExtendedTcpTable(bytes.data(), &size, FALSE, AF_INET, TCP_TABLE_OWNER_PID_ALL, 0) != NO_ERROR)
        return 0;
    const auto* table = reinterpret_cast<const MIB_TCPTABLE_OWNER_PID*>(bytes.data());
    for (DWORD i = 0; i < table->dwNumEntries; ++i) {
        if (ntohs(static_cast<u_short>(table->table[i].dwLocalPort)) == port)
            return table->table[i].dwOwningPid;
    }
    return 0;
}

struct Search
{
    DWORD process;
    HWND found;
    LONG area;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    RECT frame;
    if (process != search.process || !IsWindowVisible(window) || GetWindow(window, GW_OWNER) != nullptr ||
        !GetWindowRect(window, &frame))
        return TRUE;
    const LONG area = (frame.right - frame.left) * (frame.bottom - frame.top);
    if (area > search.area) {
        search.area = area;
        search.found = window;
    }
    return TRUE;
}
}  // namespace

ApplicationWindow::ApplicationWindow() : mWindows(std::make_unique<Windows>()) {}

ApplicationWindow::~ApplicationWindow()
{
    SetResting(false);
}

void ApplicationWindow::Find(uint16_t port)
{
    Search search{FindProcess(port), nullptr, 0};
    if (search.process == 0)
        return;
    EnumWindows(LookAtWindow, reinterpret_cast<LPARAM>(&search));
    DestroyWindow(mWindows->own);
    mWindows->application = search.found;
    mWindows->own = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, search.found,
                                    nullptr, GetModuleHandleW(nullptr), nullptr);
    SetResting(false);
}

void ApplicationWindow::SetResting(bool isResting)
{
    if (mWindows->application != nullptr)
        EnableWindow(mWindows->application, isResting ? FALSE : TRUE);
}
