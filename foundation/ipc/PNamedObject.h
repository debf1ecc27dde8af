#pragma once

#include "foundation/core/GString.h"
#include "foundation/system/POwnerSecurity.h"

#include <chrono>
#include <cstdint>

// The handle of a named mutex or semaphore of Windows.
class PNamedObject
{
public:
    // Takes over the handle that the system's call gave; raises with GErrorCode::cCreateSemaphore when it
    // gave none.
    explicit PNamedObject(HANDLE handle);
    ~PNamedObject();
    PNamedObject(const PNamedObject&) = delete;
    PNamedObject& operator=(const PNamedObject&) = delete;

    HANDLE Get() const { return mHandle; }

    // WAIT_OBJECT_0, WAIT_ABANDONED or WAIT_TIMEOUT; raises with GErrorCode::cLockSemaphore otherwise.
    DWORD Wait(std::chrono::milliseconds timeout) const;

    // `what` holds %1 for the system's reason.
    [[noreturn]] static void RaiseLastError(int32_t code, const GString& what);

private:
    HANDLE mHandle;
};
