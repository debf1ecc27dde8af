#include "apps/printer_processor/inbox/InboxCalls.h"

#include <aclapi.h>
#include <io.h>
#include <windows.h>

#include <string>

namespace
{
std::wstring GetText(const GPathName& path)
{
    return path.GetSystemPath().toStdWString();
}

qint64 Join(DWORD high, DWORD low)
{
    return qint64(high) << 32 | low;
}
}  // namespace

bool InboxCalls::MakeFolder(const GPathName& folder)
{
    return CreateDirectoryW(GetText(folder).c_str(), nullptr) != 0;
}

bool InboxCalls::MoveToFreeName(const GPathName& from, const GPathName& to)
{
    return MoveFileExW(GetText(from).c_str(), GetText(to).c_str(), MOVEFILE_WRITE_THROUGH) != 0;
}

bool InboxCalls::IsNameTaken(int error)
{
    return error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
}

InboxCalls::Look InboxCalls::LookAt(const GPathName& path)
{
    if (GetFileAttributesW(GetText(path).c_str()) != INVALID_FILE_ATTRIBUTES)
        return Look::Found;
    switch (GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
        case ERROR_FILENAME_EXCED_RANGE:
        case ERROR_BUFFER_OVERFLOW:
            return Look::Nothing;
        default:
            return Look::Unknown;
    }
}

// Files of a cloud folder are marked as links are, but stand for no other name.
InboxCalls::Kind InboxCalls::GetKind(const GPathName& path, qint64* size)
{
    WIN32_FIND_DATAW data = {};
    const HANDLE search = FindFirstFileW(GetText(path).c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND ? Kind::Other : Kind::Unknown;
    FindClose(search);
    *size = Join(data.nFileSizeHigh, data.nFileSizeLow);
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        IsReparseTagNameSurrogate(data.dwReserved0))
        return Kind::Other;
    return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::Folder : Kind::File;
}

bool InboxCalls::GetState(const QFile& file, State* state)
{
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!GetFileInformationByHandle(reinterpret_cast<HANDLE>(_get_osfhandle(file.handle())), &information))
        return false;
    const FILETIME& time = information.ftLastWriteTime;
    *state = {Join(information.nFileSizeHigh, information.nFileSizeLow),
              Join(time.dwHighDateTime, time.dwLowDateTime)};
    return true;
}

bool InboxCalls::ListNames(const GPathName& folder, QStringList* names)
{
    WIN32_FIND_DATAW data = {};
    const HANDLE search = FindFirstFileW((GetText(folder) + L"\\*").c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    do {
        const QString name = QString::fromWCharArray(data.cFileName);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names->append(name);
    } while (FindNextFileW(search, &data));
    const DWORD error = GetLastError();
    FindClose(search);
    SetLastError(error);
    return error == ERROR_NO_MORE_FILES;
}

bool InboxCalls::HasModes()
{
    return false;
}

bool InboxCalls::PrepareRights(const GPathName&, const GPathName&, std::optional<unsigned>)
{
    return true;
}

// A list of its own that is empty leaves what is handed down.
bool InboxCalls::InheritRights(const GPathName& path)
{
    ACL empty;
    std::wstring text = GetText(path);
    return InitializeAcl(&empty, sizeof empty, ACL_REVISION) != 0 &&
           SetNamedSecurityInfoW(text.data(), SE_FILE_OBJECT,
                                 DACL_SECURITY_INFORMATION | UNPROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                                 nullptr, &empty, nullptr) == ERROR_SUCCESS;
}

void InboxCalls::Hide(const GPathName& folder)
{
    SetFileAttributesW(GetText(folder).c_str(), FILE_ATTRIBUTE_HIDDEN);
}
