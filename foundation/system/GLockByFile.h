#pragma once

#include "foundation/system/GLockFile.h"

enum class GLockWait
{
    cTryOnce,
    cUntilFree
};

// Holds a lock on a file from its construction on, for as long as it lives. See GLockFile for what the lock
// is. Kept on the stack around one read or one change; used by one thread.
class GLockByFile
{
public:
    // How long a waiting lock sleeps between two attempts, in milliseconds.
    static constexpr unsigned cPause = 150;

    // Takes the lock, at the first attempt or, when it is to wait, after as many as it takes, without limit.
    // Raises what GLockFile::TryLock raises. Where Windows denies access, which is how a missing right shows
    // but also a file that is just being deleted, a waiting lock tries for some seconds before it raises.
    GLockByFile(const GPathName& path, GLockType type, GLockWait wait);

    // False only when the lock was tried once and is held elsewhere.
    bool IsLocked() const { return mFile.IsLocked(); }

private:
    GLockFile mFile;
};
