#include "foundation/ipc/GInterProcessMutex.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

GInterProcessLock::GInterProcessLock(GInterProcessMutex& mutex, std::chrono::milliseconds timeout)
    : mMutex(mutex)
{
    if (!mutex.Lock(timeout))
        throw GSimpleException(GErrorCode::cLockSemaphore,
                               QStringLiteral("Another process does not let go of the lock."));
}

GInterProcessLock::~GInterProcessLock()
{
    try {
        mMutex.Unlock();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GInterProcessLock::~GInterProcessLock"), error.GetDescription());
    }
}
