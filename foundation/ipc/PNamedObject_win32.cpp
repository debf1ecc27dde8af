#include "foundation/ipc/PNamedObject.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GSystemError.h"

PNamedObject::PNamedObject(HANDLE handle) : mHandle(handle)
{
    if (handle == nullptr)
        RaiseLastError(GErrorCode::cCreateSemaphore, QStringLiteral("The lock can't be made: %1"));
}

PNamedObject::~PNamedObject()
{
    ::CloseHandle(mHandle);
}

DWORD PNamedObject::Wait(std::chrono::milliseconds timeout) const
{
    const DWORD result = ::WaitForSingleObject(mHandle, static_cast<DWORD>(timeout.count()));
    if (result == WAIT_FAILED)
        RaiseLastError(GErrorCode::cLockSemaphore, QStringLiteral("The lock can't be had: %1"));
    return result;
}

void PNamedObject::RaiseLastError(int32_t code, const GString& what)
{
    throw GCustomException(code, what.arg(GetReasonText(GetLastSystemError())));
}
