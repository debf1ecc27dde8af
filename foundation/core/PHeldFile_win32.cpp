#include "foundation/core/PHeldFile.h"

#include <windows.h>

namespace
{
constexpr int cMostAttempts = 80;
constexpr int cQuickAttempts = 20;  // of these, with hardly a pause: most readers are gone at once
constexpr DWORD cPause = 25;        // milliseconds
}  // namespace

bool PHeldFile::Try(const std::function<bool()>& step)
{
    for (int attempt = 1; !step(); ++attempt) {
        if (!MayPass() || attempt > cMostAttempts)
            return false;
        Sleep(attempt < cQuickAttempts ? 1 : cPause);
    }
    return true;
}

bool PHeldFile::MayPass()
{
    const DWORD error = GetLastError();
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}
