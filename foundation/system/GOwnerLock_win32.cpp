#include "foundation/system/GOwnerLock.h"

#include "foundation/system/POwnerSecurity.h"

#include <windows.h>

#include <string>

namespace
{
std::wstring GetText(const GPathName& path)
{
    return path.GetSystemPath().toStdWString();
}

HANDLE GetHandle(const PFileHandle& file)
{
    return reinterpret_cast<HANDLE>(file.Get());
}

PFileHandle Open(const GPathName& path, SECURITY_ATTRIBUTES* security, DWORD disposition)
{
    constexpr DWORD cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return PFileHandle(reinterpret_cast<intptr_t>(
        CreateFileW(GetText(path).c_str(), GENERIC_READ | GENERIC_WRITE, cShareAll, security, disposition,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
}

// One byte behind everything that a file can hold: the system keeps nobody from reading or writing the rest.
OVERLAPPED GetPlace()
{
    OVERLAPPED place = {};
    place.OffsetHigh = 0x40000000;
    return place;
}
}  // namespace

PFileHandle GOwnerLock::OpenNew(const GPathName& path) noexcept
{
    POwnerSecurity security;
    return Open(path, security.Get(), CREATE_NEW);
}

PFileHandle GOwnerLock::OpenOld(const GPathName& path) noexcept
{
    return Open(path, nullptr, OPEN_EXISTING);
}

GOwnerLock::State GOwnerLock::TryLock(const PFileHandle& file) noexcept
{
    OVERLAPPED place = GetPlace();
    constexpr DWORD cHow = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    if (LockFileEx(GetHandle(file), cHow, 0, 1, 0, &place))
        return State::cLocked;
    const DWORD error = GetLastError();
    return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? State::cHeld : State::cUnknown;
}

void GOwnerLock::Unlock(const PFileHandle& file) noexcept
{
    OVERLAPPED place = GetPlace();
    if (file.IsOpen())
        UnlockFileEx(GetHandle(file), 0, 1, 0, &place);
}

// A file that somebody else is just removing can't be opened: access is denied then.
GOwnerLock::Naming GOwnerLock::LookAtName(const PFileHandle& file, const GPathName& path) noexcept
{
    BY_HANDLE_FILE_INFORMATION open = {};
    BY_HANDLE_FILE_INFORMATION named = {};
    const PFileHandle other = OpenOld(path);
    if (!other.IsOpen()) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_ACCESS_DENIED ? Naming::cOther
                                                                             : Naming::cUnknown;
    }
    if (!GetFileInformationByHandle(GetHandle(file), &open) ||
        !GetFileInformationByHandle(GetHandle(other), &named))
        return Naming::cUnknown;
    const bool isSame = open.dwVolumeSerialNumber == named.dwVolumeSerialNumber &&
                        open.nFileIndexHigh == named.nFileIndexHigh &&
                        open.nFileIndexLow == named.nFileIndexLow;
    return isSame ? Naming::cSame : Naming::cOther;
}
