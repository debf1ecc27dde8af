#pragma once

#include "foundation/core/GString.h"

#include <chrono>
#include <memory>

// A lock between the processes of one user, found by name. When its owner dies, the next one gets it at once
// and is told so. It also works between threads; a thread that has the lock must not take it again.
class GInterProcessMutex
{
public:
    enum class Mode
    {
        OpenOrCreate,
        Open  // it must exist
    };

    // Raises with GErrorCode::cCreateSemaphore; a GDamagedObject when the object with that name is not a
    // lock.
    explicit GInterProcessMutex(const GString& name, Mode mode = Mode::OpenOrCreate);
    ~GInterProcessMutex();
    GInterProcessMutex(const GInterProcessMutex&) = delete;
    GInterProcessMutex& operator=(const GInterProcessMutex&) = delete;

    // Waits for the lock; the timeout uses the steady clock. False after the timeout. Raises with
    // GErrorCode::cLockSemaphore when the lock is not available for another reason.
    [[nodiscard]] bool Lock(std::chrono::milliseconds timeout);

    // Raises with GErrorCode::cUnlockSemaphore when this thread does not have it.
    void Unlock();

    // Whether all of its memory is still there. If somebody has made the memory smaller, it can't be locked.
    // Always true on Windows.
    bool IsIntact() const;

    // Whether its memory was touched after it had disappeared: nobody else uses the lock then. Never true on
    // Windows.
    bool IsLost() const;

    // Whether it is intact and others find this same lock under its name. Always true on Windows.
    bool IsCurrent() const;

    // Removes the name: processes that have the lock open keep it, and the next process makes a new lock.
    // Does nothing on Windows, where a name disappears with its last user. Raises with
    // GErrorCode::cUnlinkSemaphore.
    static void Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
};

// Holds the lock while this object lives.
class GInterProcessLock
{
public:
    // Raises with GErrorCode::cLockSemaphore, also after the timeout.
    explicit GInterProcessLock(GInterProcessMutex& mutex,
                               std::chrono::milliseconds timeout = std::chrono::milliseconds(3000));
    ~GInterProcessLock();
    GInterProcessLock(const GInterProcessLock&) = delete;
    GInterProcessLock& operator=(const GInterProcessLock&) = delete;

private:
    GInterProcessMutex& mMutex;
};
