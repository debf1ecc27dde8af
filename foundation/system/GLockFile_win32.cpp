#include "foundation/system/GLockFile.h"

#include "foundation/system/GSystemError.h"
#include "foundation/system/POwnerSecurity.h"

#include <windows.h>

namespace
{
// How a failed open is to be taken; raises for what is neither held nor denied.
GLockFile::Result JudgeFailure(const GPathName& path, DWORD error)
{
    switch (error) {
        case ERROR_SUCCESS:
        case ERROR_BAD_UNIT:  // the drive is busy
        case ERROR_SHARING_VIOLATION:
            return GLockFile::Result::cHeld;
        case ERROR_ACCESS_DENIED:
            return GLockFile::Result::cDenied;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_PATHNAME:
            RaiseNoLockFolder(path);
        default:
            SetLastError(error);
            RaiseLockError(path, GetReasonText(GetLastSystemError()));
    }
}
// Other files that the system marks in the same way, such as those of a cloud folder, are files.
bool IsLink(HANDLE file)
{
    FILE_ATTRIBUTE_TAG_INFO information = {};
    return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &information, sizeof information) &&
           (information.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(information.ReparseTag);
}
}  // namespace

GLockFile::Result GLockFile::TryLock(GLockType type)
{
    Unlock();
    const bool isRead = type == GLockType::cRead;
    const GString systemPath = mPath.GetSystemPath();
    POwnerSecurity security;
    SetLastError(ERROR_SUCCESS);
    const HANDLE file =
        CreateFileW(reinterpret_cast<const wchar_t*>(systemPath.utf16()),
                    isRead ? GENERIC_READ : GENERIC_WRITE, isRead ? FILE_SHARE_READ : 0, security.Get(),
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return JudgeFailure(mPath, GetLastError());
    PFileHandle handle(reinterpret_cast<intptr_t>(file));
    if (IsLink(file))
        RaiseLockError(mPath, QStringLiteral("it is a link"));
    mHandle = std::move(handle);
    return Result::cLocked;
}

void GLockFile::Unlock() noexcept
{
    mHandle.Drop();
}
