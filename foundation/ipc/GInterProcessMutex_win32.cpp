#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/PNamedObject.h"

#include <string>

namespace
{
HANDLE OpenNamedMutex(const GString& name, GInterProcessMutex::Mode mode)
{
    const std::wstring wideName = name.toStdWString();
    if (mode == GInterProcessMutex::Mode::Open)
        return ::OpenMutexW(SYNCHRONIZE | MUTEX_MODIFY_STATE, FALSE, wideName.c_str());
    return ::CreateMutexW(POwnerSecurity().Get(), FALSE, wideName.c_str());
}
}  // namespace

struct GInterProcessMutex::Handle
{
    explicit Handle(HANDLE mutex) : object(mutex) {}

    PNamedObject object;
};

GInterProcessMutex::GInterProcessMutex(const GString& name, Mode mode)
    : mHandle(std::make_unique<Handle>(OpenNamedMutex(name, mode)))
{
}

GInterProcessMutex::~GInterProcessMutex() = default;

bool GInterProcessMutex::Lock(std::chrono::milliseconds timeout)
{
    return mHandle->object.Wait(timeout) != WAIT_TIMEOUT;
}

void GInterProcessMutex::Unlock()
{
    if (!::ReleaseMutex(mHandle->object.Get()))
        PNamedObject::RaiseLastError(GErrorCode::cUnlockSemaphore,
                                     QStringLiteral("The lock can't be let go: %1"));
}

bool GInterProcessMutex::IsIntact() const
{
    return true;
}

bool GInterProcessMutex::IsLost() const
{
    return false;
}

bool GInterProcessMutex::IsCurrent() const
{
    return true;
}

void GInterProcessMutex::Remove(const GString&) {}
