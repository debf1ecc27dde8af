#include "foundation/ipc/GSharedSegment.h"

#include "foundation/system/GSystemError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>

namespace
{
constexpr mode_t cOwnerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t cOthers = S_IRWXG | S_IRWXO;
constexpr std::chrono::milliseconds cPrepareTime(3000);
constexpr std::chrono::milliseconds cPreparePause(1);
constexpr size_t cMostBytes = size_t(64) << 20;  // no layout needs more; all of it is claimed

[[noreturn]] void RaiseLastError(const GString& name)
{
    const GString reason = GetReasonText(GetLastSystemError());
    RaiseSegmentError(QStringLiteral("The shared segment \"%1\" can't be opened: ") + reason, name);
}

class Descriptor
{
public:
    Descriptor(const GString& name, GSharedSegment::Mode mode)
    {
        const QByteArray path = QFile::encodeName(name);
        int flags = O_RDWR;
        if (mode == GSharedSegment::Mode::CreateNew) {
            ::shm_unlink(path.constData());
            flags |= O_CREAT | O_EXCL;
        } else if (mode == GSharedSegment::Mode::OpenOrCreate) {
            flags |= O_CREAT;
        }
        mDescriptor = ::shm_open(path.constData(), flags, cOwnerOnly);
    }
    ~Descriptor()
    {
        if (mDescriptor >= 0)
            ::close(mDescriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return mDescriptor; }

private:
    int mDescriptor;
};

struct stat GetStatus(int descriptor, const GString& name)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        RaiseLastError(name);
    return status;
}

void CheckOwner(int descriptor, const GString& name)
{
    const struct stat status = GetStatus(descriptor, name);
    if (!S_ISREG(status.st_mode) || status.st_uid != ::geteuid() || (status.st_mode & cOthers) != 0)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" belongs to another user."), name);
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

// Claims every byte: where memory is mapped that the file system does not have, the first touch of it kills
// the process. What the segment holds already stays.
bool ClaimSpace(int descriptor, off_t size, bool isNew)
{
    if (isNew && !IsWithinLimit(size))
        return false;
    int status = 0;
    do {
        status = ::fallocate(descriptor, 0, 0, size);
    } while (status != 0 && errno == EINTR);
    if (status == 0)
        return true;
    const bool isUnknown = errno == EOPNOTSUPP || errno == ENOSYS;
    return isUnknown && (!isNew || FillWithZeros(descriptor, size));
}

// Claims the space of a segment, and gives its size. One that can't be had whole leaves no name.
size_t MakeWhole(int descriptor, size_t needed, GSharedSegment::Mode mode, const GString& name)
{
    const size_t size = static_cast<size_t>(GetStatus(descriptor, name).st_size);
    const bool isNew = size == 0 && mode != GSharedSegment::Mode::Open;
    if (!isNew && size < needed)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is too small."), name);
    if (size > cMostBytes)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is too large."), name);
    if (ClaimSpace(descriptor, static_cast<off_t>(isNew ? needed : size), isNew))
        return isNew ? needed : size;
    const boost::system::error_code reason = GetLastSystemError();
    if (isNew)
        GSharedSegment::Remove(name);
    RaiseSegmentError(
        QStringLiteral("There is no space for the shared segment \"%1\": ") + GetReasonText(reason), name);
}

// Has the lock of the segment's file while it lives. A mapping would keep it after the descriptor is closed,
// so it is let go of by name. Who holds it does little; whoever dies with it lets it go.
class PrepareLock
{
public:
    PrepareLock(int descriptor, const GString& name) : mDescriptor(descriptor)
    {
        const auto deadline = std::chrono::steady_clock::now() + cPrepareTime;
        while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() > deadline)
                RaiseLastError(name);
            std::this_thread::sleep_for(cPreparePause);
        }
    }
    ~PrepareLock() { ::flock(mDescriptor, LOCK_UN); }
    PrepareLock(const PrepareLock&) = delete;
    PrepareLock& operator=(const PrepareLock&) = delete;

private:
    int mDescriptor;
};
}  // namespace

struct GSharedSegment::Handle
{
    Handle(int descriptor, size_t mappedSize)
        : data(::mmap(nullptr, mappedSize, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)),
          size(mappedSize)
    {
    }
    ~Handle()
    {
        if (data != MAP_FAILED)
            ::munmap(data, size);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void* data;
    size_t size;
};

GSharedSegment::GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare)
{
    const Descriptor descriptor(name, mode);
    if (descriptor.Get() < 0)
        RaiseLastError(name);
    CheckOwner(descriptor.Get(), name);
    const PrepareLock lock(descriptor.Get(), name);
    mSize = MakeWhole(descriptor.Get(), size, mode, name);
    mHandle = std::make_unique<Handle>(descriptor.Get(), mSize);
    if (mHandle->data == MAP_FAILED)
        RaiseLastError(name);
    mData = static_cast<uint8_t*>(mHandle->data);
    if (prepare)
        prepare(mData);
}

GSharedSegment::~GSharedSegment() = default;

bool GSharedSegment::Remove(const GString& name)
{
    return ::shm_unlink(QFile::encodeName(name).constData()) == 0 || errno == ENOENT;
}
