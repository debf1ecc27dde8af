#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

// A job that was accepted.
struct InboxJob
{
    uint64_t number = 0;    // in the journal
    uint64_t queue = 0;     // the number of the queue that it came in
    uint64_t position = 0;  // and its place there; with the queue's number it tells the job from all others
    uint32_t sender = 0;    // process identifier
    GBuffer payload;        // the bytes of the message: a ticket, as far as one knows
    GString name;           // under which its whole copy is put into the inbox; empty until it is whole
    QStringList leftOut = {};  // of the copy: what was no file and no folder

    // A text that no other job has, of this or another inbox, and that stays the same.
    QString GetID() const;
};

// What an inbox's journal says. Its form is in docs/formats/inbox-journal.md; this reads and writes it. What
// is read is taken for hostile: what does not check is left out.
struct JobJournalContent
{
    uint64_t keeper = 0;                // by which queues find their way to this inbox; 0 when there is none
    std::map<uint64_t, InboxJob> jobs;  // that are not done, by number
    std::vector<std::pair<uint64_t, uint64_t>> ends;  // queue and place: what stands before has been taken
    uint64_t lastNumber = 0;                          // of a job
    bool isDamaged = false;  // something was left out that is not the torn end of a last write

    // Reads a journal of these bytes.
    static JobJournalContent Read(const GBuffer& text);

    // The whole of it as a new journal.
    GBuffer Write() const;

    bool Knows(uint64_t queue, uint64_t position) const;
    void Add(const InboxJob& job);

    // Notes that a queue's messages before the place have been taken. Only the last few hundred queues are
    // known: the others have gone long since.
    void SetEnd(uint64_t queue, uint64_t end);
};

// One line of the journal each.
namespace JobJournalLine
{
GBuffer Keeper(uint64_t keeper);
GBuffer Job(const InboxJob& job);
GBuffer Ready(uint64_t number, const GString& name, const QStringList& leftOut = {});
GBuffer Done(uint64_t number);
GBuffer End(uint64_t queue, uint64_t end);
}  // namespace JobJournalLine
