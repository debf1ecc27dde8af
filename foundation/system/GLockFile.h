#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

enum class GLockType : int32_t
{
    cRead = 1,  // shared with other read locks
    cWrite = 2  // alone
};

// A lock on a file that represents something that processes of one user share. The lock is the open handle:
// the operating system drops it when its holder dies, so a crash never blocks the others. The file is made if
// it is missing, for its owner only, and is not removed later; its content means nothing.
//
// Two objects in one process exclude each other as two processes do. An object is used by one thread at a
// time. A symbolic link at the path is refused, not followed.
class GLockFile
{
public:
    enum class Result
    {
        cLocked,
        cHeld,   // somebody else holds it: try again
        cDenied  // Windows only: no right, or a file that is just being deleted; both give the same error
    };

    explicit GLockFile(const GPathName& path);

    // Releases the lock.
    ~GLockFile();
    GLockFile(const GLockFile&) = delete;
    GLockFile& operator=(const GLockFile&) = delete;

    // Tries once to take the lock; releases the one that this object holds first. Raises with
    // GErrorCode::cLockFile: a GSimpleException when the folder is missing or its server can't be reached,
    // and a GCustomException with the path and the reason for everything else, also for a missing right.
    Result TryLock(GLockType type);

    void Unlock() noexcept;

    bool IsLocked() const { return mHandle.IsOpen(); }
    const GPathName& GetPathName() const { return mPath; }

private:
    GPathName mPath;
    PFileHandle mHandle;  // open while the lock is held
};

// Raises what TryLock raises for a file that can't be opened; `reason` is the system's.
[[noreturn]] void RaiseLockError(const GPathName& path, const GString& reason);
[[noreturn]] void RaiseNoLockFolder(const GPathName& path);
