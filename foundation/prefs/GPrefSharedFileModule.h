#pragma once

#include "foundation/prefs/GPrefFileModule.h"

class PrefChanges;

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

    // Raise with GErrorCode::cLockFile when the lock is not available at all: a missing folder, a missing
    // right.
    void ReadDict() override;
    void WriteDict() override;

    // Makes a change to the file as it is now: takes the write lock, reads the file, puts what this module
    // has not flushed yet on top, calls `change`, writes the file if anything is different, and lets go of
    // the lock. No process's change is lost this way.
    //
    // What `change` raises comes through, as does a failure to read or write; the file is then as it was, and
    // the module holds it with its unflushed changes. In a temporary use the change lasts, and what was set
    // temporarily stays out of the file.
    void ChangeUnderLock(const std::function<void(GPrefModule&)>& change);

    GPathName GetLockPathName() const;

private:
    void ReadShared();
    void WriteShared();
    void ReadAgain(const PrefChanges& unflushed);

    GPrefGroups mKnown;  // the file's content when it was last read or written
};
