#include "foundation/ipc/PSegmentFile.h"

#include "foundation/core/GPathName.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"

#include <QFile>

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

namespace
{
constexpr mode_t cOwnerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t cOthers = S_IRWXG | S_IRWXO;
constexpr std::chrono::milliseconds cLockTime(3000);
constexpr std::chrono::milliseconds cLockPause(1);

// How a person knows a user: by the logon name, and the number.
GString GetUserText(uid_t user)
{
    struct passwd entry = {};
    struct passwd* found = nullptr;
    std::vector<char> buffer(16384);
    const bool isKnown =
        ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr;
    const GString name = isKnown ? QFile::decodeName(entry.pw_name) : QStringLiteral("unknown");
    return QStringLiteral("%1 (user number %2)").arg(name, QString::number(user));
}

[[noreturn]] void RaiseForeign(const GString& name, uid_t user)
{
    RaiseSegmentError(
        QStringLiteral("The shared segment \"%1\" belongs to another user: ") + GetUserText(user), name);
}

// A file system without a call that claims space is made to give it by writing.
bool FillWithZeros(int descriptor, off_t size)
{
    const char zeros[4096] = {};
    for (off_t at = 0; at < size;) {
        const size_t count = std::min(sizeof zeros, static_cast<size_t>(size - at));
        const ssize_t written = ::pwrite(descriptor, zeros, count, at);
        if (written <= 0 && errno != EINTR)
            return false;
        at += std::max<ssize_t>(written, 0);
    }
    return true;
}

// To grow beyond this process's own limit would be a signal, not an error.
bool IsWithinLimit(off_t size)
{
    struct rlimit limit = {};
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0 || static_cast<rlim_t>(size) <= limit.rlim_cur)
        return true;
    errno = EFBIG;
    return false;
}

// Not blocking, so that a pipe under the name can't hold the caller up.
PFileHandle Open(const QByteArray& path, GSharedSegment::Mode mode)
{
    int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
    if (mode == GSharedSegment::Mode::CreateNew) {
        ::unlink(path.constData());
        flags |= O_CREAT | O_EXCL;
    } else if (mode == GSharedSegment::Mode::OpenOrCreate) {
        flags |= O_CREAT;
    }
    return PFileHandle(::open(path.constData(), flags, cOwnerOnly));
}

GPathName GetFolder(const GString& name)
{
    return GPathName(name).GetParent();
}
}  // namespace

QByteArray PSegmentFile::GetPath(const GString& name)
{
    return QFile::encodeName(name);
}

PSegmentFile::PSegmentFile(const GString& name, GSharedSegment::Mode mode)
    : mName(name), mHandle(Open(GetPath(name), mode))
{
    if (!mHandle.IsOpen() && errno == ENOENT && mode != GSharedSegment::Mode::Open) {
        try {
            GFileSystemBase::CreateFolder(GetFolder(name));
        } catch (const GException& error) {
            RaiseSegmentError(
                QStringLiteral("The shared segment \"%1\" can't be made: ") + error.GetDescription(), name);
        }
        mHandle = Open(GetPath(name), mode);
    }
    if (!mHandle.IsOpen())
        RaiseLastError();
    CheckFolder();
    const struct stat status = GetStatus();
    Check(status);
    mDevice = status.st_dev;
    mNode = status.st_ino;
}

void PSegmentFile::CheckFolder() const
{
    struct stat folder = {};
    if (::stat(QFile::encodeName(GetFolder(mName).GetPortablePath()).constData(), &folder) != 0)
        RaiseLastError();
    const bool isOwners = folder.st_uid == ::geteuid();
    const bool isOwn = isOwners && (folder.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    const bool isGuarded = (isOwners || folder.st_uid == 0) && (folder.st_mode & S_ISVTX) != 0;
    if (!isOwn && !isGuarded)
        RaiseSegmentError(QStringLiteral("The folder of the shared segment \"%1\" is open to other users."),
                          mName);
}

void PSegmentFile::Check(const struct stat& status) const
{
    if (status.st_uid != ::geteuid())
        RaiseForeign(mName, status.st_uid);
    if (!S_ISREG(status.st_mode))
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is no file."), mName);
    if ((status.st_mode & cOthers) != 0)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is open to other users."), mName);
}

struct stat PSegmentFile::GetStatus() const
{
    struct stat status = {};
    if (::fstat(Get(), &status) != 0)
        RaiseLastError();
    return status;
}

off_t PSegmentFile::GetSize() const noexcept
{
    struct stat status = {};
    return ::fstat(Get(), &status) == 0 ? status.st_size : -1;
}

off_t PSegmentFile::GetNamedSize() const noexcept
{
    struct stat named = {};
    const bool isNamed =
        ::lstat(GetPath(mName).constData(), &named) == 0 && named.st_dev == mDevice && named.st_ino == mNode;
    return isNamed ? named.st_size : -1;
}

bool PSegmentFile::ClaimSpace(off_t size, bool isNew) const
{
    if (isNew && !IsWithinLimit(size))
        return false;
    int status = 0;
    do {
        status = ::fallocate(Get(), 0, 0, size);
    } while (status != 0 && errno == EINTR);
    if (status == 0)
        return true;
    const bool isUnknown = errno == EOPNOTSUPP || errno == ENOSYS;
    return isUnknown && (!isNew || FillWithZeros(Get(), size));
}

void PSegmentFile::RaiseLastError() const
{
    const GString reason = GetReasonText(GetLastSystemError());
    struct stat status = {};
    if (::lstat(GetPath(mName).constData(), &status) == 0 && status.st_uid != ::geteuid())
        RaiseForeign(mName, status.st_uid);
    RaiseSegmentError(QStringLiteral("The shared segment \"%1\" can't be opened: ") + reason, mName);
}

PSegmentLock::PSegmentLock(const PSegmentFile& file) : mDescriptor(file.Get())
{
    const auto deadline = std::chrono::steady_clock::now() + cLockTime;
    while (::flock(mDescriptor, LOCK_EX | LOCK_NB) != 0) {
        if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() > deadline)
            file.RaiseLastError();
        std::this_thread::sleep_for(cLockPause);
    }
}

PSegmentLock::~PSegmentLock()
{
    ::flock(mDescriptor, LOCK_UN);
}
