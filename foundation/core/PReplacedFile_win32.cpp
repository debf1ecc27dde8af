#include "foundation/core/PReplacedFile.h"

#include <windows.h>

namespace
{
constexpr int cAttempts = 20;  // while somebody replaces the file at this very moment
constexpr DWORD cPause = 5;    // milliseconds

const wchar_t* GetText(const GString& path)
{
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

// Empty when there is none.
GString FindLatest(const GString& target)
{
    WIN32_FIND_DATAW entry = {};
    const HANDLE search = FindFirstFileW(GetText(target + QStringLiteral(".*-*-*.new.old")), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return GString();
    GString name;
    FILETIME latest = {};
    do {
        if (name.isEmpty() || CompareFileTime(&entry.ftLastWriteTime, &latest) > 0) {
            name = QString::fromWCharArray(entry.cFileName);
            latest = entry.ftLastWriteTime;
        }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    return target.left(target.lastIndexOf(QLatin1Char('\\')) + 1) + name;
}
}  // namespace

bool PReplacedFile::BringBack(const GString& target)
{
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        if (GetFileAttributesW(GetText(target)) != INVALID_FILE_ATTRIBUTES)
            return true;
        const GString old = FindLatest(target);
        if (old.isEmpty())
            return false;
        if (MoveFileExW(GetText(old), GetText(target), MOVEFILE_WRITE_THROUGH))
            return true;
        Sleep(cPause);
    }
    return false;
}
