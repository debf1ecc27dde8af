#include "foundation/ipc/GSharedSegment.h"

#include "foundation/system/GSystemError.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <chrono>
#include <thread>

namespace
{
constexpr mode_t cOwnerOnly = S_IRUSR | S_IWUSR;
constexpr mode_t cOthers = S_IRWXG | S_IRWXO;
constexpr std::chrono::milliseconds cPrepareTime(3000);
constexpr std::chrono::milliseconds cPreparePause(1);

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
    if (mode != Mode::Open && GetStatus(descriptor.Get(), name).st_size == 0 &&
        ::ftruncate(descriptor.Get(), static_cast<off_t>(size)) != 0)
        RaiseLastError(name);
    mSize = static_cast<size_t>(GetStatus(descriptor.Get(), name).st_size);
    if (mSize < size)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is too small."), name);
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
