#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GSharedSegment.h"
#include "foundation/ipc/PTimeout.h"
#include "foundation/system/GSystemError.h"

#include <pthread.h>
#include <cerrno>
#include <cstring>

namespace
{
// What the lock's segment holds.
struct Content
{
    uint32_t magic;
    uint32_t version;
    pthread_mutex_t mutex;
};

constexpr size_t cSegmentSize = 64;
constexpr uint32_t cMagic = 0x4B4C564D;
constexpr uint32_t cVersion = 1;
static_assert(sizeof(Content) <= cSegmentSize, "the mutex must fit into its segment");

[[noreturn]] void Raise(int32_t code, const GString& what, int error)
{
    const GString reason = GetReasonText(boost::system::error_code(error, boost::system::system_category()));
    throw GCustomException(code, what.arg(reason));
}

void MakeMutex(pthread_mutex_t* mutex)
{
    pthread_mutexattr_t attributes;
    int error = ::pthread_mutexattr_init(&attributes);
    if (error == 0)
        error = ::pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    if (error == 0)
        error = ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    // Tells an unlock by who does not have the lock.
    if (error == 0)
        error = ::pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
    if (error == 0)
        error = ::pthread_mutex_init(mutex, &attributes);
    ::pthread_mutexattr_destroy(&attributes);
    if (error != 0)
        Raise(GErrorCode::cCreateSemaphore, QStringLiteral("The lock can't be made: %1"), error);
}

void PrepareContent(uint8_t* data)
{
    Content* const content = reinterpret_cast<Content*>(data);
    if (content->magic == 0) {
        MakeMutex(&content->mutex);
        content->version = cVersion;
        content->magic = cMagic;
    }
    if (content->magic != cMagic || content->version != cVersion)
        throw GSimpleException(GErrorCode::cCreateSemaphore,
                               QStringLiteral("The lock's segment is damaged."));
}
}  // namespace

struct GInterProcessMutex::Handle
{
    Handle(const GString& name, GSharedSegment::Mode mode) : segment(name, cSegmentSize, mode, PrepareContent)
    {
    }
    pthread_mutex_t* Get() { return &reinterpret_cast<Content*>(segment.GetData())->mutex; }

    GSharedSegment segment;
};

GInterProcessMutex::GInterProcessMutex(const GString& name, Mode mode)
{
    try {
        mHandle = std::make_unique<Handle>(
            name, mode == Mode::Open ? GSharedSegment::Mode::Open : GSharedSegment::Mode::OpenOrCreate);
    } catch (const GException& error) {
        throw GCustomException(GErrorCode::cCreateSemaphore, error.GetDescription());
    }
}

GInterProcessMutex::~GInterProcessMutex() = default;

bool GInterProcessMutex::Lock(std::chrono::milliseconds timeout)
{
    int error = ::pthread_mutex_trylock(mHandle->Get());
    if (error == EBUSY && timeout.count() == 0)
        return false;
    if (error == EBUSY) {
        const struct timespec deadline = GetDeadline(timeout);
        error = ::pthread_mutex_timedlock(mHandle->Get(), &deadline);
    }
    if (error == ETIMEDOUT)
        return false;
    const bool wasAbandoned = error == EOWNERDEAD;
    if (wasAbandoned)
        error = ::pthread_mutex_consistent(mHandle->Get());
    if (error != 0)
        Raise(GErrorCode::cLockSemaphore, QStringLiteral("The lock can't be had: %1"), error);
    mWasAbandoned = wasAbandoned;
    return true;
}

void GInterProcessMutex::Unlock()
{
    const int error = ::pthread_mutex_unlock(mHandle->Get());
    if (error != 0)
        Raise(GErrorCode::cUnlockSemaphore, QStringLiteral("The lock can't be let go: %1"), error);
}

void GInterProcessMutex::Remove(const GString& name)
{
    if (!GSharedSegment::Remove(name))
        Raise(GErrorCode::cUnlinkSemaphore, QStringLiteral("The lock can't be removed: %1"), errno);
}
