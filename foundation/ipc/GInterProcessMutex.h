#pragma once

#include "foundation/core/GString.h"

#include <chrono>
#include <memory>

// A lock between the processes of one user, by name. When its owner dies, the next one gets it at once and is
// told so. Also holds between threads; a thread that has it must not take it again.
class GInterProcessMutex
{
public:
    enum class Mode
    {
        OpenOrCreate,
        Open  // it has to be there
    };

    // Raises with GErrorCode::cCreateSemaphore; a GDamagedObject when what has the name is no lock.
    explicit GInterProcessMutex(const GString& name, Mode mode = Mode::OpenOrCreate);
    ~GInterProcessMutex();
    GInterProcessMutex(const GInterProcessMutex&) = delete;
    GInterProcessMutex& operator=(const GInterProcessMutex&) = delete;

    // Waits for the lock, by the steady clock. False when the time passed; raises with
    // GErrorCode::cLockSemaphore when it is not available for another reason.
    [[nodiscard]] bool Lock(std::chrono::milliseconds timeout);

    // Raises with GErrorCode::cUnlockSemaphore when this thread does not have it.
    void Unlock();

    // Whether its memory is all there; where somebody has cut it short, it can't be locked. Always true on
    // Windows.
    bool IsIntact() const;

    // Whether its memory was touched when it was there no more: nobody else uses it then. Never on Windows.
    bool IsLost() const;

    // Whether it is intact and what others find under its name. Always true on Windows.
    bool IsCurrent() const;

    // Takes the name away: those who have the lock open keep it, the next one makes a new one. Nothing on
    // Windows, where a name goes with its last user. Raises with GErrorCode::cUnlinkSemaphore.
    static void Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
};

// Has the lock while it lives.
class GInterProcessLock
{
public:
    // Raises with GErrorCode::cLockSemaphore when the time passed, too.
    explicit GInterProcessLock(GInterProcessMutex& mutex,
                               std::chrono::milliseconds timeout = std::chrono::milliseconds(3000));
    ~GInterProcessLock();
    GInterProcessLock(const GInterProcessLock&) = delete;
    GInterProcessLock& operator=(const GInterProcessLock&) = delete;

private:
    GInterProcessMutex& mMutex;
};
