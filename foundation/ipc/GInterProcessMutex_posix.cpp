#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/PSharedObject.h"
#include "foundation/ipc/PTimeout.h"
#include "foundation/system/GSystemError.h"

#include <pthread.h>
#include <cerrno>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace
{
constexpr uint32_t cMagic = 0x4B4C564D;

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

// Waits by the steady clock. The thread sanitizer does not know the call, and is told what it does.
int LockUntil(pthread_mutex_t* mutex, const struct timespec& deadline)
{
#ifdef __SANITIZE_THREAD__
    __tsan_mutex_pre_lock(mutex, __tsan_mutex_try_lock);
#endif
    const int error = ::pthread_mutex_clocklock(mutex, CLOCK_MONOTONIC, &deadline);
#ifdef __SANITIZE_THREAD__
    const bool isLocked = error == 0 || error == EOWNERDEAD;
    __tsan_mutex_post_lock(mutex, __tsan_mutex_try_lock | (isLocked ? 0 : __tsan_mutex_try_lock_failed), 0);
#endif
    return error;
}
}  // namespace

struct GInterProcessMutex::Handle
{
    PSharedObject<pthread_mutex_t> object;
};

GInterProcessMutex::GInterProcessMutex(const GString& name, Mode mode)
    : mHandle(new Handle{
          {name, mode == Mode::Open ? GSharedSegment::Mode::Open : GSharedSegment::Mode::OpenOrCreate, cMagic,
           MakeMutex}})
{
}

GInterProcessMutex::~GInterProcessMutex() = default;

bool GInterProcessMutex::Lock(std::chrono::milliseconds timeout)
{
    int error = ::pthread_mutex_trylock(mHandle->object.Get());
    if (error == EBUSY && timeout.count() == 0)
        return false;
    if (error == EBUSY)
        error = LockUntil(mHandle->object.Get(), GetDeadline(timeout));
    if (error == ETIMEDOUT)
        return false;
    if (error == EOWNERDEAD)  // its owner died with it
        error = ::pthread_mutex_consistent(mHandle->object.Get());
    if (error != 0)
        Raise(GErrorCode::cLockSemaphore, QStringLiteral("The lock can't be had: %1"), error);
    return true;
}

void GInterProcessMutex::Unlock()
{
    const int error = ::pthread_mutex_unlock(mHandle->object.Get());
    if (error != 0)
        Raise(GErrorCode::cUnlockSemaphore, QStringLiteral("The lock can't be let go: %1"), error);
}

bool GInterProcessMutex::IsIntact() const
{
    return mHandle->object.GetSegment().IsIntact();
}

bool GInterProcessMutex::IsLost() const
{
    return mHandle->object.GetSegment().IsLost();
}

bool GInterProcessMutex::IsCurrent() const
{
    return mHandle->object.GetSegment().IsCurrent();
}

void GInterProcessMutex::Remove(const GString& name)
{
    if (!GSharedSegment::Remove(name))
        Raise(GErrorCode::cUnlinkSemaphore, QStringLiteral("The lock can't be removed: %1"), errno);
}
