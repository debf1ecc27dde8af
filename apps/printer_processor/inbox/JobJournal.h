#pragma once

#include "apps/printer_processor/inbox/JobJournalText.h"
#include "foundation/core/GPathName.h"

#include <QFile>

#include <mutex>

// The journal of an inbox: a file with every job that was accepted and is not done. What an operation has
// noted is on the disk when it returns; when it raises, it may count as not noted.
//
// Any thread. Only one process at a time has a journal.
class JobJournal
{
public:
    // Reads the journal, or begins one. A damaged one is kept beside it, with a line in the trace; what could
    // be read of it counts. Raises a GCustomException with GErrorCode::cFile when the file can't be read or
    // written.
    explicit JobJournal(const GPathName& file);

    // By this number the queues of this inbox's receivers are found again. Never 0.
    uint64_t GetKeeper() const { return mContent.keeper; }

    // The jobs that are not done, in the order in which they were accepted.
    std::vector<InboxJob> GetJobs() const;

    // Takes in jobs, whose numbers are not set, and gives them back with numbers, without those that have
    // been taken in before. Raises when they can't be noted: none of them is accepted then.
    std::vector<InboxJob> Add(const std::vector<InboxJob>& jobs);

    // The job's copy is whole but for what was left out, and will get this name. Raises when that can't be
    // noted.
    void NoteReady(uint64_t number, const GString& name, const QStringList& leftOut = {});

    // The job is over. What can't be noted is logged: the next start finds out.
    void NoteDone(uint64_t number);

private:
    void Append(const GBuffer& lines);
    void Rewrite();

    const GPathName mPath;
    mutable std::mutex mMutex;
    JobJournalContent mContent;
    QFile mFile;            // open at its end
    qint64 mWholeSize = 0;  // of the file when it was last written anew
    bool mIsSound = false;  // the file holds what mContent holds, and ends with a whole line
};
