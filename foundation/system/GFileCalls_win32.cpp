#include "foundation/system/GFileCalls.h"

#include "foundation/core/PHeldFile.h"
#include "foundation/system/GUniqueName.h"
#include "foundation/system/POwnerSecurity.h"

#include <QFile>

#include <io.h>
#include <windows.h>

#include <memory>
#include <string>

namespace
{
struct SearchCloser
{
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};
using Search = std::unique_ptr<void, SearchCloser>;

std::wstring GetText(const GPathName& path)
{
    return path.GetSystemPath().toStdWString();
}

bool IsGone(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Takes the read-only mark off; false where that is not wished.
bool PrepareRemoval(const std::wstring& path, DWORD attributes, bool readOnlyToo)
{
    const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return true;
    if (!readOnlyToo && !isLink)
        return false;
    return SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)) != 0;
}

// One removal. A tree can be deeper than a thread's stack bears: what lies at the deepest level that is
// walked is moved up into the tree's top, to be removed from there.
struct Removal
{
    bool readOnlyToo;
    std::wstring top;
    bool hasMoved = false;
};
constexpr int cDeepest = 200;

// What is to keep its read-only content stays where it is.
bool MoveToTop(const std::wstring& folder, Removal& removal)
{
    const std::wstring place = removal.top + L"\\" + MakeRandomName(16).toStdWString();
    const bool isMoved = removal.readOnlyToo && MoveFileExW(folder.c_str(), place.c_str(), 0) != 0;
    removal.hasMoved = removal.hasMoved || isMoved;
    return isMoved;
}

bool RemoveEntry(const std::wstring& path, DWORD attributes, Removal& removal, int depth);

void RemoveContent(const std::wstring& folder, Removal& removal, int depth)
{
    WIN32_FIND_DATAW entry = {};
    const HANDLE handle = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    if (handle == INVALID_HANDLE_VALUE)
        return;
    const Search search(handle);
    do {
        const std::wstring name = entry.cFileName;
        if (name != L"." && name != L"..")
            RemoveEntry(folder + L"\\" + name, entry.dwFileAttributes, removal, depth + 1);
    } while (FindNextFileW(handle, &entry));
}

void RemoveContentOfTop(const std::wstring& folder, Removal& removal)
{
    removal.top = folder;
    do {
        removal.hasMoved = false;
        RemoveContent(folder, removal, 0);
    } while (removal.hasMoved);
}

bool RemoveEntry(const std::wstring& path, DWORD attributes, Removal& removal, int depth)
{
    if (!PrepareRemoval(path, attributes, removal.readOnlyToo))
        return false;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return DeleteFileW(path.c_str()) || IsGone(GetLastError());
    // A junction or a link to a folder is a folder of its own that is removed empty, as it is.
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        if (depth == 0)
            RemoveContentOfTop(path, removal);
        else if (depth == cDeepest && MoveToTop(path, removal))
            return true;
        else
            RemoveContent(path, removal, depth);
    }
    return RemoveDirectoryW(path.c_str()) || IsGone(GetLastError());
}
}  // namespace

PFileHandle GFileCalls::CreateNewFile(const GPathName& path)
{
    POwnerSecurity security;
    return PFileHandle(
        reinterpret_cast<intptr_t>(CreateFileW(GetText(path).c_str(), GENERIC_WRITE, 0, security.Get(),
                                               CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

bool GFileCalls::FlushFile(const QFile& file)
{
    return FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(file.handle()))) != 0;
}

bool GFileCalls::FlushFolder(const GPathName&)
{
    return true;
}

bool GFileCalls::IsNameTaken(int error)
{
    return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS;
}

bool GFileCalls::RenameFile(const GPathName& from, const GPathName& to, bool isReplacing)
{
    const std::wstring target = GetText(to);
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (isReplacing && attributes != INVALID_FILE_ATTRIBUTES)
        PrepareRemoval(target, attributes, true);
    const DWORD flags = isReplacing ? MOVEFILE_REPLACE_EXISTING : 0;
    return PHeldFile::Try([&] { return MoveFileExW(GetText(from).c_str(), target.c_str(), flags) != 0; });
}

bool GFileCalls::RemoveFile(const GPathName& path, bool readOnlyToo)
{
    const std::wstring text = GetText(path);
    const DWORD attributes = GetFileAttributesW(text.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return IsGone(GetLastError());
    constexpr DWORD cFolderLink = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    const bool isFolder = (attributes & cFolderLink) == FILE_ATTRIBUTE_DIRECTORY;
    Removal removal{readOnlyToo, {}};
    return !isFolder && RemoveEntry(text, attributes, removal, 0);
}

bool GFileCalls::RemoveTree(const GPathName& path, bool readOnlyToo)
{
    const std::wstring text = GetText(path);
    const DWORD attributes = GetFileAttributesW(text.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return IsGone(GetLastError());
    Removal removal{readOnlyToo, {}};
    return (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0 &&
           RemoveEntry(text, attributes, removal, 0);
}
