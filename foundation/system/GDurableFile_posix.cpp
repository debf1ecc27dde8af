#include "foundation/system/GDurableFile.h"

#include "foundation/system/GOwnedFile.h"
#include "foundation/system/GOwnerLock.h"
#include "foundation/system/GSystemError.h"
#include "foundation/trace/GTrace.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace
{
constexpr int cMostLinks = 40;   // the system's own limit
constexpr int cMostNames = 100;  // that others may take for leftovers

QByteArray GetSystemName(const GPathName& path)
{
    return QFile::encodeName(path.GetSystemPath());
}

GPathName GetFolder(const GPathName& file)
{
    const GPathName folder = file.GetParent();
    return folder.IsEmpty() ? GPathName(QStringLiteral(".")) : folder;
}

// Gives the new file the owner and rights of the old one. What can't be given to the same group is not given
// to another one.
bool TakeOverRights(int file, const struct stat& old)
{
    mode_t mode = old.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    struct stat status = {};
    if (fstat(file, &status) != 0)
        return false;
    const bool isSame = status.st_uid == old.st_uid && status.st_gid == old.st_gid;
    if (!isSame && fchown(file, old.st_uid, old.st_gid) != 0 && status.st_gid != old.st_gid)
        mode &= ~static_cast<mode_t>(S_IRWXG);
    return fchmod(file, mode) == 0;
}

// A file in the folder that has no name, so that nothing stays behind when this process is killed.
PFileHandle OpenNameless(const GPathName& folder, mode_t mode)
{
    PFileHandle file(open(GetSystemName(folder).constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    GOwnedFile::Own(file);  // it will have a name for a moment
    return file;
}

PFileHandle OpenNamed(const GPathName& path, mode_t mode)
{
    PFileHandle file(open(GetSystemName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    GOwnedFile::Own(file);
    return file;
}

// Where the link at the path leads, the folder with every link in it resolved by the system: a ".." in a link
// means the folder above the real one. Empty, with errno set, when that folder is not there.
QByteArray ResolveFolder(const QByteArray& link, const QByteArray& leadsTo)
{
    const QByteArray path =
        leadsTo.startsWith('/') ? leadsTo : link.left(link.lastIndexOf('/') + 1) + leadsTo;
    const int leaf = path.lastIndexOf('/') + 1;
    char folder[PATH_MAX];
    if (realpath(leaf == 0 ? "." : path.left(leaf).constData(), folder) == nullptr)
        return {};
    return QByteArray(folder) + '/' + path.mid(leaf);
}

bool HasProcessFolder()
{
    return access("/proc/self/fd", X_OK) == 0;
}
}  // namespace

GPathName GDurableFile::FollowLinks(const GPathName& target)
{
    QByteArray path = GetSystemName(target);
    for (int link = 0; link < cMostLinks; ++link) {
        char leadsTo[PATH_MAX];
        const ssize_t length = readlink(path.constData(), leadsTo, sizeof leadsTo);
        if (length < 0 && errno != EINVAL && errno != ENOENT)
            break;
        if (length < 0)
            return GPathName(QFile::decodeName(path));
        path = ResolveFolder(path, QByteArray(leadsTo, static_cast<int>(length)));
        if (path.isEmpty())
            break;
        errno = ELOOP;
    }
    RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), target, GetLastSystemError());
}

void GDurableFile::OpenTemporary()
{
    const QByteArray target = GetSystemName(mTarget);
    struct stat old = {};
    const bool hasOld = stat(target.constData(), &old) == 0;
    if (!hasOld && errno != ENOENT)
        RaiseWriteError();
    if (hasOld && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        RaiseWriteError();
    }
    // A file that its owner has made read-only is to stay as it is.
    if (hasOld && faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
        RaiseWriteError();

    constexpr mode_t cForOwner = S_IRUSR | S_IWUSR;
    constexpr mode_t cForAll = cForOwner | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    const mode_t mode = hasOld || mAccess == Access::cOwnerOnly ? cForOwner : cForAll;
    if (HasProcessFolder())
        mHandle = OpenNameless(GetFolder(mTarget), mode);
    // Not every file system knows files without a name.
    for (int attempt = 1; !mHandle.IsOpen(); ++attempt)
        OpenOwned(mode, attempt);
    if (hasOld && !TakeOverRights(static_cast<int>(mHandle.Get()), old))
        FailToOpen();
}

// Another writer may take the file for a leftover before it is owned: the handle is closed then.
void GDurableFile::OpenOwned(uint32_t mode, int attempt)
{
    mTemporary = MakeTemporaryName();
    mHandle = OpenNamed(mTemporary, static_cast<mode_t>(mode));
    if (!mHandle.IsOpen()) {
        mTemporary = GPathName();
        RaiseWriteError();
    }
    const GOwnerLock::Naming naming = GOwnerLock::LookAtName(mHandle, mTemporary);
    if (naming == GOwnerLock::Naming::cSame)
        return;
    if (naming == GOwnerLock::Naming::cUnknown || attempt == cMostNames)
        FailToOpen();
    mTemporary = GPathName();
    mHandle.Drop();
}

void GDurableFile::FailToOpen()
{
    const int error = errno;
    RemoveTemporary();
    errno = error;
    RaiseWriteError();
}

void GDurableFile::WriteNow(const char* bytes, int count)
{
    while (count > 0) {
        const ssize_t written = write(static_cast<int>(mHandle.Get()), bytes, static_cast<size_t>(count));
        if (written < 0 && errno != EINTR)
            RaiseWriteError();
        if (written > 0) {
            bytes += written;
            count -= static_cast<int>(written);
        }
    }
}

void GDurableFile::WriteAt(int64_t offset, const char* bytes, int count)
{
    while (count > 0) {
        const ssize_t written =
            pwrite(static_cast<int>(mHandle.Get()), bytes, static_cast<size_t>(count), offset);
        if (written < 0 && errno != EINTR)
            RaiseWriteError();
        if (written > 0) {
            bytes += written;
            offset += written;
            count -= static_cast<int>(written);
        }
    }
}

void GDurableFile::FlushToDisk()
{
    if (fsync(static_cast<int>(mHandle.Get())) != 0)
        RaiseWriteError();
}

void GDurableFile::GiveName()
{
    if (!mTemporary.IsEmpty())
        return;
    const GPathName name = MakeTemporaryName();
    const QByteArray handle = "/proc/self/fd/" + QByteArray::number(static_cast<int>(mHandle.Get()));
    if (linkat(AT_FDCWD, handle.constData(), AT_FDCWD, GetSystemName(name).constData(), AT_SYMLINK_FOLLOW) !=
        0)
        RaiseWriteError();
    mTemporary = name;
}

void GDurableFile::PutInPlace()
{
    if (rename(GetSystemName(mTemporary).constData(), GetSystemName(mTarget).constData()) != 0)
        RaiseWriteError();
    mTemporary = GPathName();
    mHandle.Drop();  // nothing is lost with it: everything has been flushed
    const PFileHandle folder(
        open(GetSystemName(GetFolder(mTarget)).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // The new file is in place whatever comes of this; without it a power cut may bring the old one back.
    if (!folder.IsOpen() || fsync(static_cast<int>(folder.Get())) != 0) {
        GTrace::Error(QStringLiteral("GDurableFile::Commit"),
                      QStringLiteral("The folder of \"%1\" can't be flushed: %2")
                          .arg(mTarget.GetNativePath(), GetReasonText(GetLastSystemError())));
    }
}

void GDurableFile::RemoveLeftover(const GPathName& path, const PTemporaryName::Maker&)
{
    GOwnedFile::RemoveUnowned(path);
}

void GDurableFile::RemoveTemporary() noexcept
{
    if (!mTemporary.IsEmpty())
        unlink(GetSystemName(mTemporary).constData());
    mTemporary = GPathName();
    mHandle.Drop();
}
