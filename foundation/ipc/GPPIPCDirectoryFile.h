#pragma once

#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include <memory>
#include <mutex>

// The directory of a channel under its name, with its lock. Anybody may take the two names away at any time:
// every access looks whether what it has open is still what others find there. Any thread.
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
    // damaged, and with GErrorCode::cLockSemaphore when somebody who runs does not let go of its lock.
    std::unique_ptr<Access> TryToEnter();

    // Makes the directory where it is missing, and empties one that is damaged. Raises likewise.
    std::unique_ptr<Access> Enter();

    // Takes the names of an empty directory away, and lets go of it.
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
    std::mutex mMutex;  // over the next
    std::shared_ptr<Open> mOpen;
};
