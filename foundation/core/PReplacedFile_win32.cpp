#include "foundation/core/PReplacedFile.h"

#include "foundation/core/PHeldFile.h"
#include "foundation/core/PTemporaryName.h"

#include <windows.h>

namespace
{
const wchar_t* GetText(const GString& path)
{
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

bool IsThere(const GString& target)
{
    return GetFileAttributesW(GetText(target)) != INVALID_FILE_ATTRIBUTES ||
           (GetLastError() != ERROR_FILE_NOT_FOUND && GetLastError() != ERROR_PATH_NOT_FOUND);
}

// Empty when there is none, or when the system does not tell, with its last error.
GString FindLatest(const GString& folder, const GString& target)
{
    WIN32_FIND_DATAW entry = {};
    const GString pattern = folder + PTemporaryName::GetStem(target) + QStringLiteral(".*.new.old");
    const HANDLE search = FindFirstFileW(GetText(pattern), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return GString();
    GString latest;
    FILETIME time = {};
    do {
        const GString name = QString::fromWCharArray(entry.cFileName);
        const bool isLater = latest.isEmpty() || CompareFileTime(&entry.ftLastWriteTime, &time) > 0;
        if (isLater && PTemporaryName::Read(name, target)) {
            latest = name;
            time = entry.ftLastWriteTime;
        }
    } while (FindNextFileW(search, &entry));
    const DWORD end = GetLastError();
    FindClose(search);
    SetLastError(end == ERROR_NO_MORE_FILES ? ERROR_FILE_NOT_FOUND : end);
    return latest;
}

PReplacedFile::Found TryToBringBack(const GString& target)
{
    const int leaf = target.lastIndexOf(QLatin1Char('\\')) + 1;
    if (IsThere(target))
        return PReplacedFile::Found::cTarget;
    const GString old = FindLatest(target.left(leaf), target.mid(leaf));
    const DWORD error = GetLastError();
    if (old.isEmpty()) {
        const bool isNone = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return isNone ? PReplacedFile::Found::cNothing : PReplacedFile::Found::cHeld;
    }
    if (MoveFileExW(GetText(target.left(leaf) + old), GetText(target), MOVEFILE_WRITE_THROUGH))
        return PReplacedFile::Found::cTarget;
    // Somebody else has moved it at this very moment.
    if (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_ALREADY_EXISTS)
        SetLastError(ERROR_SHARING_VIOLATION);
    return PReplacedFile::Found::cHeld;
}
}  // namespace

PReplacedFile::Found PReplacedFile::BringBack(const GString& target)
{
    Found found = Found::cNothing;
    static_cast<void>(PHeldFile::Try([&] {
        found = TryToBringBack(target);
        return found != Found::cHeld;
    }));
    return found;
}
