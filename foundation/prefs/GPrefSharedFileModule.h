#pragma once

#include "foundation/prefs/GPrefFileModule.h"

// Settings in a file that several processes of one user share. A lock file beside it, with "lock" added to
// the extension, guards each whole read and each whole write: readers go together, a writer alone, and
// whoever has to wait waits. The file is read in the encoding that its byte order mark tells and written in
// the module's.
//
// What another process has changed is seen after Refresh only. Of two processes that flush, the last one's
// file stays whole. Whoever must not lose the other's changes makes its own with ChangeUnderLock.
class GPrefSharedFileModule : public GPrefFileModule
{
public:
    // Reads the file. A failure of that is logged, and the module starts empty.
    GPrefSharedFileModule(const GPathName& path, const GEncodingRef& encoding);

    // Raise with GErrorCode::cLockFile when the lock can't be had at all: a missing folder, a missing right.
    void ReadDict() override;
    void WriteDict() override;

    // Makes a change to the file as it is now: takes the write lock, reads the file, calls `change`, writes
    // what that has changed, and lets go of the lock. No other process's change is lost this way.
    //
    // Changes of this module that were not flushed are lost, as with Refresh. What `change` raises comes
    // through, as does a failure to read or write; the file is then as it was, and the module holds what it
    // reads of it. A temporary use goes on from the changed file: its end does not take the change back.
    void ChangeUnderLock(const std::function<void(GPrefModule&)>& change);

    GPathName GetLockPathName() const;
};
