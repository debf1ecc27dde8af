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

// The post failed because the receiver does not use this queue any more: it was closed, removed, or made
// smaller. The receiver may have made another one.
class GQueueIsPast : public GSimpleException
{
public:
    using GSimpleException::GSimpleException;
};

// A queue of messages (any bytes) in shared memory, with a name. One process owns it and takes messages out;
// any process of the same user can put messages in. The messages of one sender come out in the order in which
// they were put in, whole, each once. A message stays in the queue until the queue's owner forgets it, even
// if the owner dies. Any thread can put messages in; one thread at a time takes them out.
class GMessageQueue
{
public:
    using Entry = GMessageRing::Entry;
    using Owner = GMessageRing::Owner;

    // Makes the queue with this name for this process; a queue with this name that a dead process left is
    // removed. The capacity is in bytes; each message takes its size and four bytes more. `keeper` is the
    // number by which a later process finds the queue, to take over the messages that are left in it; 0 if
    // nobody will. `notice` is what everybody who opens the queue can read about its owner. Raises with
    // GErrorCode::cSegmentHeader, also for a notice that is too long, or GErrorCode::cCreateSemaphore;
    // nothing of the queue stays then.
    static std::unique_ptr<GMessageQueue> Create(const GString& name, size_t capacity, uint64_t keeper = 0,
                                                 const GBuffer& notice = {});

    // Opens the queue of another process. Raises in the same way, also when there is no such queue.
    static std::unique_ptr<GMessageQueue> Open(const GString& name);

    // Opens the queue that a dead owner left, to take out what it holds. If its lock or semaphore is missing
    // or damaged, a new one is made, because the dead owner does not need the old one. The queue of a living
    // owner is opened as Open does. Raises in the same way; also a GDamagedObject if the owner lives and the
    // queue has no lock.
    static std::unique_ptr<GMessageQueue> OpenLeft(const GString& name);

    // Puts a message in, and wakes the owner. If the queue is full or its lock is held, tries again as the
    // policy says, as long as the owner runs. Raises with GErrorCode::cPostMessage when that does not help,
    // when the queue is closed (GQueueIsPast) or damaged, and when the message is too large for the queue.
    //
    // On Windows a queue disappears with the last process that has it open. So a message for a keeper of
    // another process counts as posted only when it was taken out. If that takes longer than the policy's
    // limit, the message is withdrawn, nobody gets it any more, and Post raises in the same way. There is one
    // exception: the owner has looked at the message, and for the same time again has neither kept it nor
    // given it back. Then it may still be taken, and the error text says so.
    void Post(const GBuffer& message, const GPostPolicy& policy = {});

    // Gives the first messages, at most `most`, and leaves them in the queue until Forget. Never waits. Empty
    // when there are no messages. After damage in the queue, the rest is lost, with a line in the trace.
    std::vector<Entry> Peek(size_t most = cAll);

    // Takes out the entries that Peek gave, up to this one.
    void Forget(const Entry& last) { mRing.Forget(last.end); }

    // Leaves in the queue the entries that Peek gave. They can be withdrawn, or given by Peek again.
    void GiveBack(const std::vector<Entry>& entries) { mRing.GiveBack(entries); }

    bool IsEmpty() const { return mRing.IsEmpty(); }

    // In bytes.
    size_t GetFill() const { return mRing.GetFill(); }
    size_t GetCapacity() const { return mRing.GetCapacity(); }

    // Waits until a message was put into the empty queue, or somebody called WakeUp. False after the timeout.
    // It may return without a message. For one thread.
    [[nodiscard]] bool WaitForMessage(std::chrono::milliseconds timeout);
    void WakeUp();

    // Whether all of the memory that WaitForMessage uses is still there.
    bool CanWait() const { return mSemaphore->IsIntact(); }

    // From now on posts fail. What is in the queue can still be taken.
    void Close();

    // Whether the process that made the queue still runs: exactly that process, not another one with its
    // number.
    bool IsOwnerAlive() const;

    // What the queue said about its owner when it was opened.
    const Owner& GetOwner() const { return mOwner; }

    // Whether all of its memory is still there; if not, no other operation may be called.
    bool IsIntact() const { return mSegment->IsIntact(); }

    // Whether others find this same queue under its name.
    bool IsCurrent() const;

    // Removes the name, and the names of the lock and the semaphore, as far as this process has the right.
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
        mSemaphore;  // none if it can't be opened: the owner also looks by itself
    GMessageRing mRing;
    const Owner mOwner;
};
