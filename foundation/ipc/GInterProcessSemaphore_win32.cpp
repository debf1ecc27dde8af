#include "foundation/core/GErrorCodes.h"
#include "foundation/ipc/GInterProcessSemaphore.h"
#include "foundation/ipc/PNamedObject.h"

#include <limits>

struct GInterProcessSemaphore::Handle
{
    Handle(const GString& name, int initialCount)
        : object(::CreateSemaphoreW(POwnerSecurity().Get(), initialCount, std::numeric_limits<LONG>::max(),
                                    name.toStdWString().c_str()))
    {
    }
    explicit Handle(HANDLE handle) : object(handle) {}

    PNamedObject object;
};

GInterProcessSemaphore::GInterProcessSemaphore(const GString& name, int initialCount)
    : mHandle(std::make_unique<Handle>(name, initialCount))
{
}

GInterProcessSemaphore::GInterProcessSemaphore(std::unique_ptr<Handle> handle) : mHandle(std::move(handle)) {}

std::unique_ptr<GInterProcessSemaphore> GInterProcessSemaphore::TryToOpen(const GString& name)
{
    const HANDLE handle =
        ::OpenSemaphoreW(SYNCHRONIZE | SEMAPHORE_MODIFY_STATE, FALSE, name.toStdWString().c_str());
    if (handle == nullptr)
        return nullptr;
    return std::unique_ptr<GInterProcessSemaphore>(
        new GInterProcessSemaphore(std::make_unique<Handle>(handle)));
}

GInterProcessSemaphore::~GInterProcessSemaphore() = default;

bool GInterProcessSemaphore::Acquire(std::chrono::milliseconds timeout)
{
    return mHandle->object.Wait(timeout) != WAIT_TIMEOUT;
}

void GInterProcessSemaphore::Release()
{
    if (!::ReleaseSemaphore(mHandle->object.Get(), 1, nullptr))
        PNamedObject::RaiseLastError(GErrorCode::cUnlockSemaphore,
                                     QStringLiteral("The semaphore can't be let go: %1"));
}

bool GInterProcessSemaphore::IsIntact() const
{
    return true;
}

bool GInterProcessSemaphore::IsCurrent() const
{
    return true;
}

void GInterProcessSemaphore::Remove(const GString&) {}
