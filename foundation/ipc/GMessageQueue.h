#pragma once

#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GSharedSegment.h"

#include <chrono>
#include <memory>
#include <vector>

// How long a post tries when the queue is busy.
struct GPostPolicy
{
    std::chrono::milliseconds interval{300};  // between two attempts
    std::chrono::milliseconds limit{3000};    // in all
};

// A queue of messages (any bytes) in shared memory, under a name: one process owns it and takes messages out,
// any of the same user's puts them in. Messages of one sender come out in the order in which they went in,
// whole, each once. Any thread.
class GMessageQueue
{
public:
    // Makes the queue of a name for this process; one that a dead process left is put away. The capacity is
    // in bytes, of which each message takes its size and four more. Raises with GErrorCode::cSegmentHeader or
    // GErrorCode::cCreateSemaphore.
    static std::unique_ptr<GMessageQueue> Create(const GString& name, size_t capacity);

    // Opens another's queue. Raises likewise, also when there is none.
    static std::unique_ptr<GMessageQueue> Open(const GString& name);

    // Puts a message in. Where the queue is full or its lock is held, it is tried again as the policy says,
    // as long as the owner runs. Raises with GErrorCode::cPostMessage when that is in vain, when the queue is
    // closed or damaged, and when it could never hold the message.
    void Post(const GBuffer& message, const GPostPolicy& policy = {});

    // Takes out everything that is there. Empty when there is nothing, and when somebody else has held the
    // lock for 300 ms: then it is there the next time. A damaged queue is emptied, with a line in the trace.
    std::vector<GBuffer> TakeAll();

    // From now on posts fail. What is in the queue can still be taken.
    void Close();

    // Whether the process that made the queue runs: that very process, not another one of its number.
    bool IsOwnerAlive() const;

    bool IsOwnedBy(uint32_t processID) const { return mRing.GetOwner().processID == processID; }

    // Takes the name away, and that of its lock, as far as this process may.
    static void Remove(const GString& name);

private:
    GMessageQueue(const GString& name, std::unique_ptr<GSharedSegment> segment, const GMessageRing& ring,
                  GInterProcessMutex::Mode mode);

    bool TryPost(const GBuffer& message, std::chrono::milliseconds lockTime);

    std::unique_ptr<GSharedSegment> mSegment;
    GInterProcessMutex mMutex;
    GMessageRing mRing;
};
