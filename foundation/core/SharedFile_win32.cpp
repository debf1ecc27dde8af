#include "foundation/core/SharedFile.h"

#include "foundation/core/GPathNameRules.h"
#include "foundation/core/PReplacedFile.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace
{
QString GetSystemPath(const QString& path)
{
    return GPathNameRules::ToSystem(GPathNameRules::ToPortable(QFileInfo(path).absoluteFilePath()));
}

const wchar_t* GetText(const QString& path)
{
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

bool IsMissing(const QString& systemPath)
{
    if (GetFileAttributesW(GetText(systemPath)) != INVALID_FILE_ATTRIBUTES)
        return false;
    const DWORD error = GetLastError();
    return error == ERROR_PATH_NOT_FOUND ||
           (error == ERROR_FILE_NOT_FOUND &&
            PReplacedFile::BringBack(systemPath) == PReplacedFile::Found::cNothing);
}

// Why an open handle is not read; empty when it is.
GString GetRefusal(HANDLE handle, int64_t largest)
{
    const DWORD type = GetFileType(handle);
    if (type != FILE_TYPE_DISK)
        return type == FILE_TYPE_PIPE ? QStringLiteral("it is a pipe") : QStringLiteral("it is a device");
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!GetFileInformationByHandle(handle, &information))
        return qt_error_string(static_cast<int>(GetLastError()));
    if ((information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return QStringLiteral("it is a folder");
    const int64_t size = static_cast<int64_t>(information.nFileSizeHigh) << 32 | information.nFileSizeLow;
    return size > largest ? GetTooLargeReason(size, largest) : GString();
}

FileOpening JudgeFailure(const QString& systemPath, DWORD error, GString& reason)
{
    reason = qt_error_string(static_cast<int>(error));
    if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND)
        return FileOpening::cRefused;
    if (IsMissing(systemPath))
        return FileOpening::cMissing;
    reason = QStringLiteral("it is a link that leads nowhere");
    return FileOpening::cRefused;
}

HANDLE Open(const QString& path)
{
    return ::CreateFileW(GetText(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// Gives the handle to the file, which closes it; false, with the handle still open, when that fails.
bool TakeHandle(QFile& file, HANDLE handle, GString& reason)
{
    const int descriptor = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    if (descriptor < 0) {
        reason = qt_error_string(ERROR_TOO_MANY_OPEN_FILES);
        ::CloseHandle(handle);
        return false;
    }
    if (file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle))
        return true;
    reason = file.errorString();
    ::_close(descriptor);
    return false;
}
}  // namespace

// Qt opens files without the right to delete them meanwhile, which would make every replacement of a settings
// file wait for its readers. With backup semantics a folder opens, too, and can be called one.
FileOpening OpenSharedForReading(QFile& file, int64_t largest, GString& reason)
{
    const QString path = GetSystemPath(file.fileName());
    HANDLE handle = Open(path);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_FILE_NOT_FOUND &&
        PReplacedFile::BringBack(path) == PReplacedFile::Found::cTarget)
        handle = Open(path);
    if (handle == INVALID_HANDLE_VALUE)
        return JudgeFailure(path, ::GetLastError(), reason);
    reason = GetRefusal(handle, largest);
    if (!reason.isEmpty()) {
        ::CloseHandle(handle);
        return FileOpening::cRefused;
    }
    return TakeHandle(file, handle, reason) ? FileOpening::cOpen : FileOpening::cRefused;
}

bool IsFileMissing(const GString& path)
{
    return IsMissing(GetSystemPath(path));
}
