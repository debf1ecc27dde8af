#pragma once

#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include <memory>
#include <mutex>

// The directory of a channel, found by its name, with its lock. Anybody may remove the two names at any time:
// so every access checks whether others still find there what it has open. Any thread.
class GPPIPCDirectoryFile
{
private:
    struct Open;

public:
    // The directory, locked while this lives.
    class Access
    {
    public:
        Access(const std::shared_ptr<Open>& open, std::chrono::milliseconds timeout);

        GPPIPCDirectory& Get() { return mDirectory; }

    private:
        friend class GPPIPCDirectoryFile;

        std::shared_ptr<Open> mOpen;
        GInterProcessLock mLock;
        GPPIPCDirectory mDirectory;
    };

    explicit GPPIPCDirectoryFile(const GString& name) : mName(name) {}

    // None when there is no directory. Raises with GErrorCode::cSegmentHeader when it can't be opened or is
    // damaged, and with GErrorCode::cLockSemaphore when a running process does not release its lock.
    std::unique_ptr<Access> TryToEnter();

    // Makes the directory if it is missing, and empties one that is damaged. Raises in the same way.
    std::unique_ptr<Access> Enter();

    // Removes the names of an empty directory, and closes it.
    void Leave(std::unique_ptr<Access> access);

private:
    enum class Mode
    {
        IfThere,
        Make
    };

    std::shared_ptr<Open> GetOpen(Mode mode);
    std::unique_ptr<Access> EnterOnce(Mode mode);
    std::unique_ptr<Access> Enter(Mode mode);

    const GString mName;
    std::mutex mMutex;  // guards the next
    std::shared_ptr<Open> mOpen;
};
