#include "foundation/system/GLockFile.h"

#include "foundation/system/GOwnerLock.h"
#include "foundation/system/GSystemError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace
{
constexpr mode_t cOwnerOnly = 0600;
constexpr int cMostAttempts = 1000;  // while others delete the file

PFileHandle OpenLockFile(const GPathName& path, const QByteArray& systemPath, GLockType type)
{
    // Not blocking, so that a pipe under the name can't hold the caller up.
    const int access = type == GLockType::cRead ? O_RDONLY : O_WRONLY;
    const int file =
        open(systemPath.constData(), access | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, cOwnerOnly);
    if (file >= 0)
        return PFileHandle(file);
    if (errno == ENOENT || errno == ENOTDIR)
        RaiseNoLockFolder(path);
    RaiseLockError(path, GetReasonText(GetLastSystemError()));
}

// Sets the lock of the open file description: unlike the process-wide kind, it is not lost when another part
// of the process closes the same file, and two handles of one process exclude each other.
bool SetLock(int file, short type)
{
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return fcntl(file, F_OFD_SETLK, &lock) == 0;
}

}  // namespace

GLockFile::Result GLockFile::TryLock(GLockType type)
{
    Unlock();
    const QByteArray systemPath = QFile::encodeName(mPath.GetSystemPath());
    for (int attempt = 0; attempt < cMostAttempts; ++attempt) {
        PFileHandle file = OpenLockFile(mPath, systemPath, type);
        const int descriptor = static_cast<int>(file.Get());
        struct stat status = {};
        if (fstat(descriptor, &status) != 0)
            RaiseLockError(mPath, GetReasonText(GetLastSystemError()));
        if (!S_ISREG(status.st_mode))
            RaiseLockError(mPath, QStringLiteral("it is not a file"));
        if (!SetLock(descriptor, type == GLockType::cRead ? F_RDLCK : F_WRLCK)) {
            if (errno == EAGAIN || errno == EACCES)
                return Result::cHeld;
            RaiseLockError(mPath, GetReasonText(GetLastSystemError()));
        }
        // Whoever deleted the file meanwhile would leave us with a lock that nobody else sees.
        const GOwnerLock::Naming naming = GOwnerLock::LookAtName(file, mPath);
        if (naming == GOwnerLock::Naming::cUnknown)
            RaiseLockError(mPath, GetReasonText(GetLastSystemError()));
        if (naming == GOwnerLock::Naming::cSame) {
            mHandle = std::move(file);
            return Result::cLocked;
        }
    }
    RaiseLockError(mPath, QStringLiteral("it is deleted again and again"));
}

void GLockFile::Unlock() noexcept
{
    // A child that is just being started holds a copy of the descriptor until it becomes its program; closing
    // ours alone would leave the lock in its hands.
    if (mHandle.IsOpen())
        SetLock(static_cast<int>(mHandle.Get()), F_UNLCK);
    mHandle.Drop();
}
