#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessSemaphore.h"
#include "foundation/ipc/PSharedObject.h"
#include "foundation/ipc/PTimeout.h"
#include "foundation/system/GSystemError.h"

#include <semaphore.h>
#include <cerrno>

namespace
{
constexpr uint32_t cMagic = 0x5353564D;

[[noreturn]] void RaiseLastError(int32_t code, const GString& what)
{
    throw GCustomException(code, what.arg(GetReasonText(GetLastSystemError())));
}

void MakeSemaphore(sem_t* semaphore, int initialCount)
{
    if (::sem_init(semaphore, 1, static_cast<unsigned>(initialCount)) != 0)
        RaiseLastError(GErrorCode::cCreateSemaphore, QStringLiteral("The semaphore can't be made: %1"));
}
}  // namespace

struct GInterProcessSemaphore::Handle
{
    PSharedObject<sem_t> object;
};

GInterProcessSemaphore::GInterProcessSemaphore(const GString& name, int initialCount)
    : mHandle(new Handle{{name, GSharedSegment::Mode::OpenOrCreate, cMagic,
                          [initialCount](sem_t* semaphore) { MakeSemaphore(semaphore, initialCount); }}})
{
}

GInterProcessSemaphore::GInterProcessSemaphore(std::unique_ptr<Handle> handle) : mHandle(std::move(handle)) {}

std::unique_ptr<GInterProcessSemaphore> GInterProcessSemaphore::TryToOpen(const GString& name)
{
    try {
        return std::unique_ptr<GInterProcessSemaphore>(new GInterProcessSemaphore(
            std::unique_ptr<Handle>(new Handle{{name, GSharedSegment::Mode::Open, cMagic,
                                                [](sem_t* semaphore) { MakeSemaphore(semaphore, 0); }}})));
    } catch (const GException&) {
        return nullptr;
    }
}

GInterProcessSemaphore::~GInterProcessSemaphore() = default;

bool GInterProcessSemaphore::Acquire(std::chrono::milliseconds timeout)
{
    const struct timespec deadline = GetDeadline(timeout);
    int status = 0;
    do {
        status = ::sem_clockwait(mHandle->object.Get(), CLOCK_MONOTONIC, &deadline);
    } while (status != 0 && errno == EINTR);
    if (status != 0 && errno != ETIMEDOUT)
        RaiseLastError(GErrorCode::cLockSemaphore, QStringLiteral("The semaphore can't be had: %1"));
    return status == 0;
}

void GInterProcessSemaphore::Release()
{
    if (::sem_post(mHandle->object.Get()) != 0)
        RaiseLastError(GErrorCode::cUnlockSemaphore, QStringLiteral("The semaphore can't be let go: %1"));
}

bool GInterProcessSemaphore::IsIntact() const
{
    return mHandle->object.GetSegment().IsIntact();
}

bool GInterProcessSemaphore::IsCurrent() const
{
    return mHandle->object.GetSegment().IsCurrent();
}

void GInterProcessSemaphore::Remove(const GString& name)
{
    if (!GSharedSegment::Remove(name))
        RaiseLastError(GErrorCode::cUnlinkSemaphore, QStringLiteral("The semaphore can't be removed: %1"));
}
