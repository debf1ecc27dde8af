#pragma once

#include "foundation/core/GString.h"

#include <chrono>
#include <memory>

// A counter between the processes of one user, by name: Acquire lowers it and waits while it is zero, Release
// raises it. Unlike a mutex it has no owner: what a process that died had acquired stays acquired.
class GInterProcessSemaphore
{
public:
    // Opens the semaphore, or makes it with the count. Raises with GErrorCode::cCreateSemaphore.
    GInterProcessSemaphore(const GString& name, int initialCount);
    ~GInterProcessSemaphore();
    GInterProcessSemaphore(const GInterProcessSemaphore&) = delete;
    GInterProcessSemaphore& operator=(const GInterProcessSemaphore&) = delete;

    // False when the time passed. Raises with GErrorCode::cLockSemaphore.
    bool Acquire(std::chrono::milliseconds timeout);

    // Raises with GErrorCode::cUnlockSemaphore when the count is at the system's limit.
    void Release();

    // Takes the name away, as GInterProcessMutex::Remove. Raises with GErrorCode::cUnlinkSemaphore.
    static void Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
};
