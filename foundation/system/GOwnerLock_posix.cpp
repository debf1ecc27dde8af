#include "foundation/system/GOwnerLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace
{
// A lock of the open file description, as GLockFile has it.
bool SetLock(const PFileHandle& file, short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    int result = 0;
    do
        result = fcntl(static_cast<int>(file.Get()), F_OFD_SETLK, &lock);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

QByteArray GetSystemName(const GPathName& path)
{
    return QFile::encodeName(path.GetSystemPath());
}
}  // namespace

PFileHandle GOwnerLock::OpenNew(const GPathName& path) noexcept
{
    return PFileHandle(
        open(GetSystemName(path).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

PFileHandle GOwnerLock::OpenOld(const GPathName& path) noexcept
{
    PFileHandle file(open(GetSystemName(path).constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (file.IsOpen() && (fstat(static_cast<int>(file.Get()), &status) != 0 || !S_ISREG(status.st_mode))) {
        file.Drop();
        errno = EINVAL;
    }
    return file;
}

GOwnerLock::State GOwnerLock::TryLock(const PFileHandle& file) noexcept
{
    if (SetLock(file, F_WRLCK))
        return State::cLocked;
    return errno == EAGAIN || errno == EACCES ? State::cHeld : State::cUnknown;
}

void GOwnerLock::Unlock(const PFileHandle& file) noexcept
{
    // A child that is just being started holds a copy of the descriptor.
    if (file.IsOpen())
        SetLock(file, F_UNLCK);
}

GOwnerLock::Naming GOwnerLock::LookAtName(const PFileHandle& file, const GPathName& path) noexcept
{
    struct stat open = {};
    struct stat named = {};
    if (fstat(static_cast<int>(file.Get()), &open) != 0)
        return Naming::cUnknown;
    if (lstat(GetSystemName(path).constData(), &named) != 0)
        return errno == ENOENT ? Naming::cOther : Naming::cUnknown;
    return open.st_dev == named.st_dev && open.st_ino == named.st_ino ? Naming::cSame : Naming::cOther;
}
