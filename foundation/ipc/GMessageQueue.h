#pragma once

#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GInterProcessSemaphore.h"
#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GSharedSegment.h"

#include <chrono>
#include <limits>
#include <memory>
#include <vector>

// How long a post tries when the queue is busy.
struct GPostPolicy
{
    std::chrono::milliseconds interval{300};  // between two attempts
    std::chrono::milliseconds limit{3000};    // in all
};

// The post failed because the queue is not this receiver's any more: closed, put away, or cut short. The
// receiver may have made another one.
class GQueueIsPast : public GSimpleException
{
public:
    using GSimpleException::GSimpleException;
};

// A queue of messages (any bytes) in shared memory, under a name: one process owns it and takes messages out,
// any of the same user's puts them in. Messages of one sender come out in the order in which they went in,
// whole, each once. A message stays in the queue until its owner forgets it, also when the owner dies. Any
// thread puts in; one thread at a time takes out.
class GMessageQueue
{
public:
    using Entry = GMessageRing::Entry;
    using Owner = GMessageRing::Owner;

    // Makes the queue of a name for this process; one that a dead process left is put away. The capacity is
    // in bytes, of which each message takes its size and four more. `keeper` is the number by which somebody
    // after this process finds the queue, to take over what is left in it; 0 where nobody will. `notice` is
    // what everybody who opens the queue gets to know of its owner. Raises with GErrorCode::cSegmentHeader,
    // also for too long a notice, or GErrorCode::cCreateSemaphore; nothing of the queue stays then.
    static std::unique_ptr<GMessageQueue> Create(const GString& name, size_t capacity, uint64_t keeper = 0,
                                                 const GBuffer& notice = {});

    // Opens another's queue. Raises likewise, also when there is none.
    static std::unique_ptr<GMessageQueue> Open(const GString& name);

    // Opens the queue that a dead owner left, to take out what it holds. Lock and semaphore that are gone or
    // damaged are made anew: the dead have no use for them. The queue of an owner who lives is opened as Open
    // does. Raises likewise, a GDamagedObject also for a living one's queue without its lock.
    static std::unique_ptr<GMessageQueue> OpenLeft(const GString& name);

    // Puts a message in, and wakes the owner. Where the queue is full or its lock is held, it is tried again
    // as the policy says, as long as the owner runs. Raises with GErrorCode::cPostMessage when that is in
    // vain, when the queue is closed (GQueueIsPast) or damaged, and when it could never hold the message.
    //
    // On Windows a queue goes with the last process that has it open. What is meant for a keeper of another
    // process is posted only when it was taken out. Where that takes longer than the policy's limit, the
    // message is withdrawn, and it raises likewise: nobody gets it any more. Only one that the owner has
    // looked at, and neither kept nor given back for as long again, may still be taken, and the text says so.
    void Post(const GBuffer& message, const GPostPolicy& policy = {});

    // Gives the first messages, at most so many, and leaves them in the queue until Forget. Never waits.
    // Empty when there is nothing. Damage costs what stands behind it, with a line in the trace.
    std::vector<Entry> Peek(size_t most = cAll);

    // Takes out what Peek gave, up to this entry.
    void Forget(const Entry& last) { mRing.Forget(last.end); }

    // Leaves in the queue what Peek gave, to be withdrawn or given again.
    void GiveBack(const std::vector<Entry>& entries) { mRing.GiveBack(entries); }

    bool IsEmpty() const { return mRing.IsEmpty(); }

    // In bytes.
    size_t GetFill() const { return mRing.GetFill(); }
    size_t GetCapacity() const { return mRing.GetCapacity(); }

    // Waits until a message was put into the empty queue, or somebody called WakeUp. False when the time
    // passed. It may wake for nothing. For one thread.
    [[nodiscard]] bool WaitForMessage(std::chrono::milliseconds timeout);
    void WakeUp();

    // Whether the memory that WaitForMessage waits in is all there.
    bool CanWait() const { return mSemaphore->IsIntact(); }

    // From now on posts fail. What is in the queue can still be taken.
    void Close();

    // Whether the process that made the queue runs: that very process, not another one of its number.
    bool IsOwnerAlive() const;

    // What the queue said of its owner when it was opened.
    const Owner& GetOwner() const { return mOwner; }

    // Whether all of its memory is there; where it is not, no other operation may be called.
    bool IsIntact() const { return mSegment->IsIntact(); }

    // Whether others find this very queue under its name.
    bool IsCurrent() const;

    // Takes the name away, and those of its lock and its semaphore, as far as this process may.
    static void Remove(const GString& name);

    static constexpr size_t cAll = std::numeric_limits<size_t>::max();

private:
    GMessageQueue(const GString& name, std::unique_ptr<GSharedSegment> segment, const GMessageRing& ring,
                  GInterProcessMutex::Mode mode);

    [[nodiscard]] uint64_t PutIn(const GBuffer& message, const GPostPolicy& policy);
    [[nodiscard]] bool TryPost(const GBuffer& message, std::chrono::milliseconds lockTime, uint64_t* end);
    [[nodiscard]] bool WaitUntilTaken(uint64_t end, std::chrono::milliseconds limit) const;
    GMessageRing::Withdrawal Withdraw(const GBuffer& message, uint64_t end, std::chrono::milliseconds limit);
    void SeeToItsTaking(const GBuffer& message, uint64_t end, std::chrono::milliseconds limit);

    std::unique_ptr<GSharedSegment> mSegment;
    GInterProcessMutex mMutex;
    std::unique_ptr<GInterProcessSemaphore>
        mSemaphore;  // none where it can't be opened: the owner looks, too
    GMessageRing mRing;
    const Owner mOwner;
};
