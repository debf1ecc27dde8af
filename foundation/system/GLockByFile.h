#pragma once

#include "foundation/system/GLockFile.h"

enum class GLockWait
{
    cTryOnce,
    cUntilFree
};

// Holds a lock on a file from its construction to its destruction. GLockFile describes the lock. Keep it on
// the stack around one read or one change; used by one thread.
class GLockByFile
{
public:
    // How long a waiting lock sleeps between two attempts, in milliseconds.
    static constexpr unsigned cPause = 150;

    // Takes the lock. Tries once or, if it must wait, as often as needed, without limit. Raises what
    // GLockFile::TryLock raises. When Windows denies access, the reason may be a missing right, but also a
    // file that is just being deleted; so a waiting lock tries for some seconds before it raises.
    GLockByFile(const GPathName& path, GLockType type, GLockWait wait);

    // False only when the lock was tried once and is held elsewhere.
    bool IsLocked() const { return mFile.IsLocked(); }

private:
    GLockFile mFile;
};
