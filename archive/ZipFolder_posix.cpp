#include "archive/ZipFolder.h"

#include "archive/ZipEntryPath.h"
#include "foundation/system/GOwnedFile.h"

#include <QFile>

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace Morvane
{
static FileIdentity getIdentityOf(const struct stat& status)
{
    return {static_cast<uint64_t>(status.st_dev), static_cast<uint64_t>(status.st_ino)};
}

static bool changeMode(int descriptor, int added, int taken)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
        return false;
    const mode_t old = status.st_mode & 07777;
    const mode_t mode = (old | static_cast<mode_t>(added)) & ~static_cast<mode_t>(taken);
    return mode == old || fchmod(descriptor, mode) == 0;
}

static bool addModeTo(int descriptor, int mode)
{
    return mode == 0 || changeMode(descriptor, mode, 0);
}

bool canHoldName(const QString& name)
{
    return QFile::encodeName(name).size() <= NAME_MAX;
}

ZipFile::~ZipFile()
{
    static_cast<void>(close());  // who wrote has closed it
}

bool ZipFile::write(const char* bytes, int size)
{
    while (size > 0) {
        const ssize_t count = ::write(static_cast<int>(mHandle), bytes, static_cast<size_t>(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<int>(count);
    }
    return true;
}

bool ZipFile::addMode(int mode)
{
    return addModeTo(static_cast<int>(mHandle), mode);
}

bool ZipFile::setReadOnly()
{
    return changeMode(static_cast<int>(mHandle), 0, 0222);
}

bool ZipFile::setModified(const QDateTime& moment)
{
    timespec times[2] = {};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = static_cast<time_t>(moment.toSecsSinceEpoch());
    return futimens(static_cast<int>(mHandle), times) == 0;
}

std::optional<FileIdentity> ZipFile::getIdentity() const
{
    struct stat status = {};
    if (fstat(static_cast<int>(mHandle), &status) != 0)
        return std::nullopt;
    return getIdentityOf(status);
}

PFileHandle ZipFile::own() const
{
    PFileHandle owner(fcntl(static_cast<int>(mHandle), F_DUPFD_CLOEXEC, 0));
    GOwnedFile::Own(owner);
    return owner;
}

bool ZipFile::close()
{
    const int descriptor = static_cast<int>(mHandle);
    mHandle = -1;
    return descriptor < 0 || ::close(descriptor) == 0;
}

struct ZipFolder::Place
{
    explicit Place(int descriptor) : mDescriptor(descriptor) {}
    ~Place() { ::close(mDescriptor); }

    const int mDescriptor;
};

ZipFolder::ZipFolder(std::unique_ptr<Place> place) : mPlace(std::move(place)) {}

ZipFolder::~ZipFolder() = default;

std::unique_ptr<ZipFolder> ZipFolder::openRoot(const QString& path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    return std::unique_ptr<ZipFolder>(new ZipFolder(std::make_unique<Place>(descriptor)));
}

std::unique_ptr<ZipFolder> ZipFolder::openFolder(const QString& name) const
{
    const int descriptor = openat(mPlace->mDescriptor, QFile::encodeName(name).constData(),
                                  O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    return std::unique_ptr<ZipFolder>(new ZipFolder(std::make_unique<Place>(descriptor)));
}

bool ZipFolder::makeFolder(const QString& name) const
{
    return mkdirat(mPlace->mDescriptor, QFile::encodeName(name).constData(), 0777) == 0;
}

std::unique_ptr<ZipFile> ZipFolder::makeNameless() const
{
    const int descriptor = openat(mPlace->mDescriptor, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    return descriptor < 0 ? nullptr : std::make_unique<ZipFile>(descriptor);
}

bool ZipFolder::giveName(const ZipFile& file, const QString& name) const
{
    const QByteArray handle = "/proc/self/fd/" + QByteArray::number(static_cast<int>(file.mHandle));
    return linkat(AT_FDCWD, handle.constData(), mPlace->mDescriptor, QFile::encodeName(name).constData(),
                  AT_SYMLINK_FOLLOW) == 0;
}

bool ZipFolder::keep(const ZipFile&)
{
    return true;
}

std::unique_ptr<ZipFile> ZipFolder::makeFile(const QString& name) const
{
    const int descriptor = openat(mPlace->mDescriptor, QFile::encodeName(name).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    return descriptor < 0 ? nullptr : std::make_unique<ZipFile>(descriptor);
}

ZipFolder::Found ZipFolder::look(const QString& name, FileIdentity& identity) const
{
    struct stat status
    {
    };
    const QByteArray path = QFile::encodeName(name);
    if (fstatat(mPlace->mDescriptor, path.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return Found::Nothing;
    identity = getIdentityOf(status);
    if (S_ISLNK(status.st_mode))
        return Found::Link;
    if (!S_ISREG(status.st_mode))
        return Found::Other;
    return (status.st_mode & S_IWUSR) != 0 ? Found::File : Found::ReadOnlyFile;
}

bool ZipFolder::replaceFile(const QString& from, const QString& to) const
{
    return renameat(mPlace->mDescriptor, QFile::encodeName(from).constData(), mPlace->mDescriptor,
                    QFile::encodeName(to).constData()) == 0;
}

QString ZipFolder::getPath(const QString& name) const
{
    return QStringLiteral("/proc/self/fd/%1/%2").arg(mPlace->mDescriptor).arg(name);
}

bool ZipFolder::removeFolder(const QString& name) const
{
    return unlinkat(mPlace->mDescriptor, QFile::encodeName(name).constData(), AT_REMOVEDIR) == 0;
}

bool ZipFolder::addMode(int mode) const
{
    return addModeTo(mPlace->mDescriptor, mode);
}
}  // namespace Morvane
