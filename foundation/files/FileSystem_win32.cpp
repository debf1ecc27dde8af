#include "foundation/files/FileSystem.h"

#include "foundation/files/LongPath.h"
#include "foundation/system/PCom.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <string>
#include <vector>

namespace Morvane::FileSystem
{
namespace
{
constexpr int cRecycleBinPathLimit = 260;  // the shell's own limit, in characters

Error lastError()
{
    return Error(static_cast<int>(::GetLastError()), boost::system::system_category());
}

Error result(BOOL status)
{
    return status ? Error() : lastError();
}

std::wstring toWide(const QString& text)
{
    return text.toStdWString();
}

// The long form of the absolute path. It turns off the system's own clean-up of a path, so that comes first.
std::wstring toSystem(const QString& path)
{
    return toWide(toLongPath(QDir::cleanPath(QFileInfo(fromLongPath(path)).absoluteFilePath())));
}

QString getNearestExisting(const QString& path)
{
    QFileInfo item(fromLongPath(path));
    while (getItemKind(item.absoluteFilePath()) == ItemKind::None && !item.isRoot())
        item = QFileInfo(item.absolutePath());
    return item.absoluteFilePath();
}

// Whether nothing bears the name, nor could anything: not what failed for another reason.
bool saysMissing(const Error& error)
{
    switch (error.value()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_DIRECTORY:
            return true;
        default:
            return false;
    }
}

bool isLinkTag(DWORD tag)
{
    return tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT;
}

// The mount point of the volume, such as "C:\", in the form in which the system compares it.
QString getVolume(const QString& path)
{
    std::vector<wchar_t> mountPoint(MAX_PATH + 1);
    const std::wstring native = toWide(QDir::toNativeSeparators(getNearestExisting(path)));
    if (!::GetVolumePathNameW(native.c_str(), mountPoint.data(), MAX_PATH))
        return {};
    std::vector<wchar_t> name(MAX_PATH + 1);
    if (::GetVolumeNameForVolumeMountPointW(mountPoint.data(), name.data(), MAX_PATH))
        return QString::fromWCharArray(name.data()).toUpper();
    return QString::fromWCharArray(mountPoint.data()).toUpper();
}

// An open handle on the dates and marks of an item, the link itself where it is one.
class AttributeHandle
{
public:
    AttributeHandle(const QString& path, DWORD access)
        : mHandle(::CreateFileW(
              toSystem(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr))
    {
    }
    ~AttributeHandle()
    {
        if (isOpen())
            ::CloseHandle(mHandle);
    }
    AttributeHandle(const AttributeHandle&) = delete;
    AttributeHandle& operator=(const AttributeHandle&) = delete;

    bool isOpen() const { return mHandle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return mHandle; }

private:
    HANDLE mHandle;
};

struct FileTimes
{
    FILETIME created;
    FILETIME accessed;
    FILETIME modified;
};

Error readTimes(const QString& path, FileTimes* times)
{
    const AttributeHandle handle(path, FILE_READ_ATTRIBUTES);
    if (!handle.isOpen())
        return lastError();
    return result(::GetFileTime(handle.get(), &times->created, &times->accessed, &times->modified));
}

Error writeTimes(const QString& path, const FILETIME* created, const FILETIME* accessed,
                 const FILETIME* modified)
{
    const AttributeHandle handle(path, FILE_WRITE_ATTRIBUTES);
    if (!handle.isOpen())
        return lastError();
    return result(::SetFileTime(handle.get(), created, accessed, modified));
}

QDateTime toDateTime(const FILETIME& time)
{
    constexpr qint64 cTicksPerMillisecond = 10000;
    constexpr qint64 cUnixEpoch = 11644473600000;  // in milliseconds since 1601
    const qint64 ticks = (static_cast<qint64>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return QDateTime::fromMSecsSinceEpoch(ticks / cTicksPerMillisecond - cUnixEpoch);
}

Error deleteReadOnly(const std::wstring& path, DWORD attributes)
{
    if (!::SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY)))
        return lastError();
    if (::DeleteFileW(path.c_str()))
        return {};
    const Error error = lastError();
    ::SetFileAttributesW(path.c_str(), attributes);
    return error;
}
}  // namespace

ItemKind getItemKind(const QString& path)
{
    Error error;
    return getItemKind(path, &error);
}

ItemKind getItemKind(const QString& path, Error* error)
{
    const std::wstring native = toSystem(path);
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    *error = Error();
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const Error reason = lastError();
        if (saysMissing(reason))
            return ItemKind::None;
        *error = reason;
        return ItemKind::Other;
    }
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        WIN32_FIND_DATAW data = {};
        const HANDLE search = ::FindFirstFileW(native.c_str(), &data);
        if (search != INVALID_HANDLE_VALUE)
            ::FindClose(search);
        if (search == INVALID_HANDLE_VALUE || isLinkTag(data.dwReserved0))
            return ItemKind::Link;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ItemKind::Folder : ItemKind::File;
}

Error listFolder(const QString& path, QStringList* names)
{
    names->clear();
    WIN32_FIND_DATAW entry = {};
    const HANDLE search = ::FindFirstFileW((toSystem(path) + L"\\*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return lastError();
    do {
        const QString name = QString::fromWCharArray(entry.cFileName);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names->append(name);
    } while (::FindNextFileW(search, &entry));
    const Error error = lastError();
    ::FindClose(search);
    if (error.value() == ERROR_NO_MORE_FILES)
        return {};
    names->clear();
    return error;
}

Error makeFolder(const QString& path)
{
    return result(::CreateDirectoryW(toSystem(path).c_str(), nullptr));
}

Error copyRights(const QString& source, const QString& destination)
{
    const QFile::Permissions rights = QFile::permissions(source);
    return rights != 0 && QFile::setPermissions(destination, rights)
               ? Error()
               : Error(ERROR_ACCESS_DENIED, boost::system::system_category());
}

// All that there is to add is taking away the mark of a read-only file.
Error addOwnerRights(const QString& path, QFileDevice::Permissions added)
{
    const DWORD attributes = ::GetFileAttributesW(toSystem(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return lastError();
    const bool isKept = (added & QFile::WriteOwner) == 0 || (attributes & FILE_ATTRIBUTE_READONLY) == 0;
    return isKept
               ? Error()
               : result(::SetFileAttributesW(toSystem(path).c_str(), attributes & ~FILE_ATTRIBUTE_READONLY));
}

Error flushFile(const QString& path)
{
    const HANDLE file = ::CreateFileW(toSystem(path).c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        // The system writes out what nobody may open for writing, such as a read-only copy, in its own time.
        return ::GetLastError() == ERROR_ACCESS_DENIED ? Error() : lastError();
    const Error error = result(::FlushFileBuffers(file));
    ::CloseHandle(file);
    return error;
}

Error getFileSize(const QString& path, qint64* size)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (::GetFileAttributesExW(toSystem(path).c_str(), GetFileExInfoStandard, &data) == 0)
        return lastError();
    *size = (static_cast<qint64>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return {};
}

Error flushFolder(const QString&)
{
    return {};
}

Error removeItem(const QString& path)
{
    const std::wstring native = toSystem(path);
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    const bool isFolder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolder && getItemKind(path) == ItemKind::Link)
        return result(::RemoveDirectoryW(native.c_str()));
    if (::DeleteFileW(native.c_str()))
        return {};
    const Error error = lastError();
    const bool isReadOnly =
        !isFolder && attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    return isReadOnly ? deleteReadOnly(native, attributes) : error;
}

Error removeEmptyFolder(const QString& path)
{
    const std::wstring native = toSystem(path);
    if (::RemoveDirectoryW(native.c_str()))
        return {};
    const Error error = lastError();
    const DWORD attributes = ::GetFileAttributesW(native.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return error;
    ::SetFileAttributesW(native.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    return result(::RemoveDirectoryW(native.c_str()));
}

Error renameItem(const QString& source, const QString& destination)
{
    return result(::MoveFileExW(toSystem(source).c_str(), toSystem(destination).c_str(), 0));
}

Error copyLink(const QString& source, const QString& destination)
{
    const std::wstring from = toSystem(source);
    const std::wstring to = toSystem(destination);
    const DWORD attributes = ::GetFileAttributesW(from.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return lastError();
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return result(::CreateDirectoryExW(from.c_str(), to.c_str(), nullptr));
    return result(::CopyFileExW(from.c_str(), to.c_str(), nullptr, nullptr, nullptr,
                                COPY_FILE_COPY_SYMLINK | COPY_FILE_FAIL_IF_EXISTS));
}

bool areOnSameVolume(const QString& one, const QString& other)
{
    const QString volume = getVolume(one);
    return !volume.isEmpty() && volume == getVolume(other);
}

Error getFreeSpace(const QString& path, qint64* bytes)
{
    QString folder = getNearestExisting(path);
    if (getItemKind(folder) != ItemKind::Folder)
        folder = QFileInfo(folder).absolutePath();
    ULARGE_INTEGER available = {};
    if (!::GetDiskFreeSpaceExW(toSystem(folder).c_str(), &available, nullptr, nullptr))
        return lastError();
    *bytes = static_cast<qint64>(available.QuadPart);
    return {};
}

bool hasMedium(const QString& path)
{
    std::vector<wchar_t> mountPoint(MAX_PATH + 1);
    const std::wstring native =
        toWide(QDir::toNativeSeparators(QFileInfo(fromLongPath(path)).absoluteFilePath()));
    if (!::GetVolumePathNameW(native.c_str(), mountPoint.data(), MAX_PATH))
        return false;
    // An empty drive answers with an error, not with a window that asks for a disk.
    DWORD previousMode = 0;
    ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &previousMode);
    const BOOL isReady =
        ::GetVolumeInformationW(mountPoint.data(), nullptr, 0, nullptr, nullptr, nullptr, nullptr, 0);
    ::SetThreadErrorMode(previousMode, nullptr);
    return isReady != FALSE;
}

Error getDateTimes(const QString& path, DateTimes* times)
{
    FileTimes fileTimes = {};
    if (const Error error = readTimes(path, &fileTimes))
        return error;
    times->created = toDateTime(fileTimes.created);
    times->modified = toDateTime(fileTimes.modified);
    times->accessed = toDateTime(fileTimes.accessed);
    return {};
}

Error copyDateTimes(const QString& source, const QString& destination)
{
    FileTimes times = {};
    const Error error = readTimes(source, &times);
    return error ? error : writeTimes(destination, &times.created, &times.accessed, &times.modified);
}

Error copyCreationDateTime(const QString& source, const QString& destination)
{
    FileTimes times = {};
    const Error error = readTimes(source, &times);
    return error ? error : writeTimes(destination, &times.created, nullptr, nullptr);
}

// A path that is too long for the shell can't go to the recycle bin and is deleted for good: whoever asked
// for a removal gets one.
Error moveToTrash(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    if (native.size() >= cRecycleBinPathLimit)
        return result(::DeleteFileW(toWide(toLongPath(native)).c_str()));
    std::wstring list = toWide(native);
    list.append(2, L'\0');
    SHFILEOPSTRUCTW operation = {};
    operation.wFunc = FO_DELETE;
    operation.pFrom = list.c_str();
    operation.fFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI | FOF_NOCONFIRMMKDIR;
    const int status = ::SHFileOperationW(&operation);
    return Error(status, boost::system::system_category());
}

QString readLinkTarget(const QString& path)
{
    const PComApartment apartment;
    PComReference<IShellLinkW> link;
    if (FAILED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                  link.GetAddress())))
        return {};
    PComReference<IPersistFile> file;
    if (FAILED(link->QueryInterface(IID_IPersistFile, file.GetAddress())))
        return {};
    if (FAILED(file->Load(toWide(QDir::toNativeSeparators(path)).c_str(), STGM_READ)))
        return {};
    std::vector<wchar_t> target(MAX_PATH + 1);
    if (link->GetPath(target.data(), MAX_PATH, nullptr, SLGP_RAWPATH) != S_OK)
        return {};
    return QDir::fromNativeSeparators(QString::fromWCharArray(target.data()));
}

struct FolderLock::Handle
{
    HANDLE folder = INVALID_HANDLE_VALUE;
    bool isHeld = true;

    ~Handle()
    {
        if (folder != INVALID_HANDLE_VALUE)
            ::CloseHandle(folder);
    }
};

FolderLock::FolderLock(const QString& folder) : mHandle(std::make_unique<Handle>())
{
    mHandle->folder =
        ::CreateFileW(toSystem(folder).c_str(), FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE,
                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (mHandle->folder == INVALID_HANDLE_VALUE)
        mHandle->isHeld = ::GetLastError() != ERROR_SHARING_VIOLATION;
}

FolderLock::~FolderLock() = default;

bool FolderLock::isHeld() const
{
    return mHandle->isHeld;
}
}  // namespace Morvane::FileSystem
