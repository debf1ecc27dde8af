#pragma once

#include "apps/printer_processor/inbox/JobCopy.h"
#include "apps/printer_processor/inbox/JobJournal.h"
#include "foundation/system/GLockFile.h"

#include <functional>
#include <memory>
#include <optional>

// The folder into which jobs are copied, each under a name that was free: its own, or one with a number. A
// copy gets its name only when it is whole and on the disk, and a job that was accepted gets one copy,
// however often the process is killed on the way: a start goes on with what the journal says.
//
// What is needed for that is in the folder ".printer-processor" of the inbox: the journal, a lock that keeps
// a second process out, and the folder of unfinished copies.
class JobInbox
{
public:
    // Makes the folder when it is missing, waits up to three seconds for another process to leave it, reads
    // the journal, and removes copies that were not finished. Raises a GException when one of these fails.
    // Waits no longer once `isStopped` says so. `mode` is what copies get instead of what the user's umask
    // leaves (PrepareRights in InboxCalls.h).
    explicit JobInbox(const GPathName& folder, std::optional<unsigned> mode = {},
                      const std::function<bool()>& isStopped = {});

    JobJournal& GetJournal() { return *mJournal; }

    // Where a file of a moment may lie: each start empties it of what it doesn't know.
    const GPathName& GetScratchFolder() const { return mCopies; }

    // Copies a job of the journal that lies at a location, and gives the path of the copy. It stays in the
    // journal: when it comes again, the path is given again and nothing is copied. Raises a RefusedJob when
    // the job is at fault. What else it raises may be gone the next time: the job is to be tried again, as it
    // is then.
    GPathName Deliver(InboxJob* job, const GString& location, const std::atomic<bool>& isStopped);

private:
    void TakeLock(const std::function<bool()>& isStopped);
    void RemoveLeftovers() const;
    GPathName GetUnfinished(uint64_t number) const;
    void MakeCopy(InboxJob* job, const GString& location, const std::atomic<bool>& isStopped) const;
    GPathName GiveName(InboxJob* job);
    GPathName FindFreeName(const GString& wanted, int* number) const;

    const std::optional<unsigned> mMode;
    GPathName mFolder;
    GPathName mCopies;
    std::unique_ptr<GLockFile> mLock;
    std::unique_ptr<JobJournal> mJournal;
};
