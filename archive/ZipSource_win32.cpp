#include "archive/ZipSource.h"

#include "foundation/core/GException.h"
#include "foundation/core/GPathName.h"
#include "foundation/core/PReplacedFile.h"
#include "foundation/system/GSystemError.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace Morvane
{
static constexpr DWORD cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Empty, with the last error set, for a path that Windows can't take.
static std::wstring getSystemPath(const QString& path)
{
    try {
        return GPathName(path).GetSystemPath().toStdWString();
    } catch (const GException&) {
        SetLastError(ERROR_INVALID_NAME);
        return {};
    }
}

static qint64 getMoment(const FILETIME& time)
{
    constexpr qint64 cTicksPerMillisecond = 10000;
    constexpr qint64 cMillisecondsFrom1601 = 11644473600000;
    const qint64 ticks = qint64(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return ticks / cTicksPerMillisecond - cMillisecondsFrom1601;
}

static bool isMissing(DWORD error)
{
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME;
}

// Of a path that may be missing only because a replacement was cut off, so that the old file comes back.
static DWORD getAttributes(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES || GetLastError() != ERROR_FILE_NOT_FOUND)
        return attributes;
    const PReplacedFile::Found found = PReplacedFile::BringBack(QString::fromStdWString(path));
    return found == PReplacedFile::Found::cTarget ? GetFileAttributesW(path.c_str()) : attributes;
}

// What a link leads to is asked of an open handle: the attributes of a path are the link's own.
static bool getInformation(const std::wstring& path, BY_HANDLE_FILE_INFORMATION& information)
{
    const PFileHandle handle(
        reinterpret_cast<intptr_t>(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, cShareAll, nullptr,
                                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)));
    return handle.IsOpen() &&
           GetFileInformationByHandle(reinterpret_cast<HANDLE>(handle.Get()), &information) != 0;
}

template <typename Status>
void ZipSource::takeNote(const Status& status)
{
    mIsFolder = (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    mSize = mIsFolder ? 0 : qint64(status.nFileSizeHigh) << 32 | status.nFileSizeLow;
    mModified = getMoment(status.ftLastWriteTime);
    mIsReadOnly = (status.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
}

bool ZipSource::failBySystem()
{
    mReason = GetReasonText(GetLastSystemError());
    return false;
}

ZipSource::Kind ZipSource::look()
{
    const std::wstring path = getSystemPath(mPath);
    const DWORD attributes = path.empty() ? INVALID_FILE_ATTRIBUTES : getAttributes(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const bool isGone = isMissing(GetLastError());
        failBySystem();
        return isGone ? Kind::Missing : Kind::Unknown;
    }
    const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!getInformation(path, information)) {
        const bool isDangling = isLink && isMissing(GetLastError());
        failBySystem();
        return isDangling ? Kind::LinkToNothing : Kind::Unknown;
    }
    takeNote(information);
    if (!mIsFolder)
        return Kind::File;
    return isLink ? Kind::LinkToFolder : Kind::Folder;
}

bool ZipSource::open()
{
    const std::wstring path = getSystemPath(mPath);
    if (path.empty())
        return failBySystem();
    mFile = PFileHandle(reinterpret_cast<intptr_t>(CreateFileW(
        path.c_str(), GENERIC_READ, cShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr)));
    const auto handle = reinterpret_cast<HANDLE>(mFile.Get());
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!mFile.IsOpen() || !GetFileInformationByHandle(handle, &information))
        return failBySystem();
    takeNote(information);
    if (!mIsFolder && GetFileType(handle) == FILE_TYPE_DISK)
        return true;
    mReason = QStringLiteral("it is no file");
    return false;
}

int ZipSource::read(char* bytes, int size)
{
    DWORD count = 0;
    if (ReadFile(reinterpret_cast<HANDLE>(mFile.Get()), bytes, static_cast<DWORD>(size), &count, nullptr))
        return static_cast<int>(count);
    failBySystem();
    return -1;
}

bool ZipSource::rewind()
{
    const LARGE_INTEGER start = {};
    return SetFilePointerEx(reinterpret_cast<HANDLE>(mFile.Get()), start, nullptr, FILE_BEGIN) != 0 ||
           failBySystem();
}

bool ZipSource::hasChanged()
{
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!GetFileInformationByHandle(reinterpret_cast<HANDLE>(mFile.Get()), &information))
        return !failBySystem();
    const qint64 size = qint64(information.nFileSizeHigh) << 32 | information.nFileSizeLow;
    return size != mSize || getMoment(information.ftLastWriteTime) != mModified;
}

bool listSources(const QString& folder, QStringList& names, QString& reason)
{
    const std::wstring path = getSystemPath(folder);
    WIN32_FIND_DATAW entry = {};
    const HANDLE search =
        path.empty() ? INVALID_HANDLE_VALUE : FindFirstFileW((path + L"\\*").c_str(), &entry);
    bool isThere = search != INVALID_HANDLE_VALUE;
    while (isThere) {
        const QString name = QString::fromWCharArray(entry.cFileName);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names.append(name);
        isThere = FindNextFileW(search, &entry) != 0;
    }
    const boost::system::error_code error = GetLastSystemError();
    if (search != INVALID_HANDLE_VALUE)
        FindClose(search);
    // The root of an empty volume has not even "." to be found.
    const bool isWhole = error.value() == ERROR_NO_MORE_FILES || error.value() == ERROR_FILE_NOT_FOUND;
    if (!isWhole)
        reason = GetReasonText(error);
    std::sort(names.begin(), names.end());
    return isWhole;
}

uint16_t getMadeBy()
{
    return 0;
}
}  // namespace Morvane
