#include "foundation/core/SharedFile.h"

#include "foundation/core/GPathNameRules.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Qt opens files without the right to delete them meanwhile, which would make every replacement of a settings
// file wait for its readers.
bool OpenSharedForReading(QFile& file, GString& reason)
{
    const QString path =
        GPathNameRules::ToSystem(GPathNameRules::ToPortable(QFileInfo(file.fileName()).absoluteFilePath()));
    const HANDLE handle = ::CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_READ,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        reason = qt_error_string(static_cast<int>(::GetLastError()));
        return false;
    }
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
