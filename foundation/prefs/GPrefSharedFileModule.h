#pragma once

#include "foundation/prefs/GPrefFileModule.h"

class PrefChanges;

// Settings in a file that several processes of one user share. A lock file beside it, with "lock" added to
// the extension, guards each whole read and each whole write: several readers can hold it together, a writer
// only alone; the others wait. The file is read in the encoding that its byte order mark tells and written in
// the encoding of the module.
//
// Changes by another process are seen only after Refresh. If two processes flush, the file of the last one
// stays. To lose no change of another process, make your own changes with ChangeUnderLock.
class GPrefSharedFileModule : public GPrefFileModule
{
public:
    // Reads the file. A failure is logged, and the module starts empty.
    GPrefSharedFileModule(const GPathName& path, const GEncodingRef& encoding);

    // These raise with GErrorCode::cLockFile when the lock is not available at all, because of a missing
    // folder or right.
    void ReadDict() override;
    void WriteDict() override;

    // Makes a change to the file as it is now: takes the write lock, reads the file, adds the changes that
    // this module has not flushed yet, calls `change`, writes the file if anything is different, and releases
    // the lock. In this way no process loses a change.
    //
    // Exceptions from `change` are passed on, and also failures to read or write; the file is then as it was,
    // and the module holds its content with the unflushed changes. During a temporary use this change is
    // permanent, and values that were set temporarily are not written to the file.
    void ChangeUnderLock(const std::function<void(GPrefModule&)>& change);

    GPathName GetLockPathName() const;

private:
    void ReadShared();
    void WriteShared();
    void ReadAgain(const PrefChanges& unflushed);

    GPrefGroups mKnown;  // the file's content when it was last read or written
};
