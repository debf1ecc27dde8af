#include "foundation/files/FileSystem.h"

#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <cerrno>

#include <climits>
#include <cstdio>

namespace Morvane::FileSystem
{
namespace
{
Error lastError()
{
    return Error(errno, boost::system::system_category());
}

Error result(int status)
{
    return status == 0 ? Error() : lastError();
}

// Without separators at the end: the system would follow a link whose name ends in one.
QByteArray toSystem(const QString& path)
{
    QByteArray name = QFile::encodeName(path);
    while (name.size() > 1 && name.endsWith('/'))
        name.chop(1);
    return name;
}

QString getNearestExisting(const QString& path)
{
    QFileInfo item(path);
    while (getItemKind(item.absoluteFilePath()) == ItemKind::None && !item.isRoot())
        item = QFileInfo(item.absolutePath());
    return item.absoluteFilePath();
}

bool getVolume(const QString& path, dev_t* volume)
{
    struct stat status = {};
    if (::lstat(toSystem(getNearestExisting(path)).constData(), &status) != 0)
        return false;
    *volume = status.st_dev;
    return true;
}

// For file systems without the call that refuses to replace.
Error renameIfFree(const QByteArray& source, const QByteArray& destination)
{
    struct stat status = {};
    if (::lstat(destination.constData(), &status) == 0)
        return Error(EEXIST, boost::system::system_category());
    if (errno != ENOENT)
        return lastError();
    return result(::rename(source.constData(), destination.constData()));
}

struct FolderCloser
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

QDateTime toDateTime(const struct statx_timestamp& time)
{
    return QDateTime::fromMSecsSinceEpoch(time.tv_sec * 1000 + time.tv_nsec / 1000000);
}
}  // namespace

ItemKind getItemKind(const QString& path)
{
    Error error;
    return getItemKind(path, &error);
}

ItemKind getItemKind(const QString& path, Error* error)
{
    struct stat status = {};
    *error = Error();
    if (::lstat(toSystem(path).constData(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return ItemKind::None;
        *error = lastError();
        return ItemKind::Other;
    }
    if (S_ISLNK(status.st_mode))
        return ItemKind::Link;
    if (S_ISDIR(status.st_mode))
        return ItemKind::Folder;
    return S_ISREG(status.st_mode) ? ItemKind::File : ItemKind::Other;
}

Error listFolder(const QString& path, QStringList* names)
{
    names->clear();
    const std::unique_ptr<DIR, FolderCloser> folder(::opendir(toSystem(path).constData()));
    if (folder == nullptr)
        return lastError();
    // Only the error number tells the end from a failure.
    errno = 0;
    while (const dirent* entry = ::readdir(folder.get())) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names->append(QFile::decodeName(name));
        errno = 0;
    }
    if (errno == 0)
        return {};
    names->clear();
    return lastError();
}

Error makeFolder(const QString& path)
{
    return result(::mkdir(toSystem(path).constData(), 0777));
}

Error copyRights(const QString& source, const QString& destination)
{
    struct stat status = {};
    if (::stat(toSystem(source).constData(), &status) != 0)
        return lastError();
    constexpr mode_t cRights = S_IRWXU | S_IRWXG | S_IRWXO;
    return result(::chmod(toSystem(destination).constData(), status.st_mode & cRights));
}

Error addOwnerRights(const QString& path, QFileDevice::Permissions added)
{
    struct stat status = {};
    if (::stat(toSystem(path).constData(), &status) != 0)
        return lastError();
    mode_t mode = status.st_mode & 07777;
    mode |= added & QFile::ReadOwner ? S_IRUSR : 0;
    mode |= added & QFile::WriteOwner ? S_IWUSR : 0;
    mode |= added & QFile::ExeOwner ? S_IXUSR : 0;
    return result(::chmod(toSystem(path).constData(), mode));
}

Error flushFile(const QString& path)
{
    const int file = ::open(toSystem(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0)
        return lastError();
    const Error error = result(::fsync(file));
    ::close(file);
    return error;
}

Error getFileSize(const QString& path, qint64* size)
{
    struct stat status = {};
    if (::lstat(toSystem(path).constData(), &status) != 0)
        return lastError();
    *size = status.st_size;
    return {};
}

Error flushFolder(const QString& path)
{
    return flushFile(path);
}

Error removeItem(const QString& path)
{
    return result(::unlink(toSystem(path).constData()));
}

Error removeEmptyFolder(const QString& path)
{
    return result(::rmdir(toSystem(path).constData()));
}

Error renameItem(const QString& source, const QString& destination)
{
    const QByteArray from = toSystem(source);
    const QByteArray to = toSystem(destination);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return {};
    return errno == EINVAL || errno == ENOSYS ? renameIfFree(from, to) : lastError();
}

Error copyLink(const QString& source, const QString& destination)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t length =
        ::readlink(toSystem(source).constData(), target.data(), static_cast<size_t>(target.size() - 1));
    if (length < 0)
        return lastError();
    return result(::symlink(target.constData(), toSystem(destination).constData()));
}

bool areOnSameVolume(const QString& one, const QString& other)
{
    dev_t oneVolume = 0;
    dev_t otherVolume = 0;
    return getVolume(one, &oneVolume) && getVolume(other, &otherVolume) && oneVolume == otherVolume;
}

Error getFreeSpace(const QString& path, qint64* bytes)
{
    struct statvfs volume = {};
    if (::statvfs(toSystem(getNearestExisting(path)).constData(), &volume) != 0)
        return lastError();
    *bytes = static_cast<qint64>(volume.f_bavail) * static_cast<qint64>(volume.f_frsize);
    return {};
}

bool hasMedium(const QString& path)
{
    struct statvfs volume = {};
    return ::statvfs(toSystem(path).constData(), &volume) == 0;
}

Error getDateTimes(const QString& path, DateTimes* times)
{
    struct statx status = {};
    if (::statx(AT_FDCWD, toSystem(path).constData(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME,
                &status) != 0)
        return lastError();
    times->created = (status.stx_mask & STATX_BTIME) != 0 ? toDateTime(status.stx_btime) : QDateTime();
    times->modified = toDateTime(status.stx_mtime);
    times->accessed = toDateTime(status.stx_atime);
    return {};
}

Error copyDateTimes(const QString& source, const QString& destination)
{
    struct stat status = {};
    if (::lstat(toSystem(source).constData(), &status) != 0)
        return lastError();
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    return result(::utimensat(AT_FDCWD, toSystem(destination).constData(), times, AT_SYMLINK_NOFOLLOW));
}

Error copyCreationDateTime(const QString&, const QString&)
{
    return Error(ENOTSUP, boost::system::system_category());
}

Error moveToTrash(const QString& path)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    QFile file(path);
    if (file.moveToTrash())
        return {};
    return getItemKind(path) == ItemKind::None ? Error(ENOENT, boost::system::system_category())
                                               : Error(EIO, boost::system::system_category());
#else
    Q_UNUSED(path)
    return Error(ENOTSUP, boost::system::system_category());
#endif
}

QString readLinkTarget(const QString& path)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t length =
        ::readlink(toSystem(path).constData(), target.data(), static_cast<size_t>(target.size()));
    return length < 0 ? QString() : QFile::decodeName(target.left(static_cast<int>(length)));
}

struct FolderLock::Handle
{
    int descriptor = -1;
    bool isHeld = true;

    ~Handle()
    {
        if (descriptor >= 0)
            ::close(descriptor);
    }
};

FolderLock::FolderLock(const QString& folder) : mHandle(std::make_unique<Handle>())
{
    mHandle->descriptor = ::open(toSystem(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (mHandle->descriptor >= 0 && ::flock(mHandle->descriptor, LOCK_SH | LOCK_NB) != 0)
        mHandle->isHeld = errno != EWOULDBLOCK;
}

FolderLock::~FolderLock() = default;

bool FolderLock::isHeld() const
{
    return mHandle->isHeld;
}
}  // namespace Morvane::FileSystem
