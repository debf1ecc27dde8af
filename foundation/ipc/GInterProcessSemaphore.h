#pragma once

#include "foundation/core/GString.h"

#include <chrono>
#include <memory>

// A counter between the processes of one user, found by name: Acquire lowers it and waits while it is zero,
// Release raises it. Unlike a mutex it has no owner: if a process dies, what it had acquired stays acquired.
class GInterProcessSemaphore
{
public:
    // Opens the semaphore, or makes it with the count. Raises with GErrorCode::cCreateSemaphore.
    GInterProcessSemaphore(const GString& name, int initialCount);

    // Opens an existing semaphore; gives none when there is none that can be opened.
    static std::unique_ptr<GInterProcessSemaphore> TryToOpen(const GString& name);

    ~GInterProcessSemaphore();
    GInterProcessSemaphore(const GInterProcessSemaphore&) = delete;
    GInterProcessSemaphore& operator=(const GInterProcessSemaphore&) = delete;

    // False after the timeout, which uses the steady clock. Raises with GErrorCode::cLockSemaphore.
    [[nodiscard]] bool Acquire(std::chrono::milliseconds timeout);

    // Raises with GErrorCode::cUnlockSemaphore when the count is at the system's limit.
    void Release();

    // Whether all of its memory is still there. If not, Acquire and Release must not be called. Always true
    // on Windows.
    bool IsIntact() const;

    // Whether it is intact and others find this same semaphore under its name. Always true on Windows.
    bool IsCurrent() const;

    // Removes the name, like GInterProcessMutex::Remove. Raises with GErrorCode::cUnlinkSemaphore.
    static void Remove(const GString& name);

private:
    struct Handle;

    explicit GInterProcessSemaphore(std::unique_ptr<Handle> handle);

    std::unique_ptr<Handle> mHandle;
};
