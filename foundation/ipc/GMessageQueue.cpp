#include "foundation/ipc/GMessageQueue.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/trace/GTrace.h"

#include <QRandomGenerator>

#include <algorithm>
#include <thread>

namespace
{
using Clock = std::chrono::steady_clock;

// Who is stopped in the middle of a post must not hold up the end of the owner.
constexpr std::chrono::milliseconds cCloseTime(300);

constexpr std::chrono::milliseconds cTakenPause(2);  // between two looks whether a message was taken

GString GetLockName(const GString& name)
{
    return name + QLatin1String("_L");
}

GString GetSemaphoreName(const GString& name)
{
    return name + QLatin1String("_S");
}

[[noreturn]] void RaisePostError(const char* reason)
{
    throw GSimpleException(GErrorCode::cPostMessage,
                           QLatin1String("The message could not be posted: ") + QLatin1String(reason));
}

std::unique_ptr<GSharedSegment> OpenSegment(const GString& name)
{
    return std::make_unique<GSharedSegment>(name, GMessageRing::cHeaderSize + GMessageRing::cLeastCapacity,
                                            GSharedSegment::Mode::Open);
}

bool IsAlive(const GMessageQueue::Owner& owner)
{
    return owner.startTime != 0 && GProcessInfo::GetStartTime(owner.processID) == owner.startTime;
}

std::chrono::milliseconds GetRemaining(Clock::time_point deadline)
{
    return std::max(std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()),
                    std::chrono::milliseconds(0));
}
}  // namespace

std::unique_ptr<GMessageQueue> GMessageQueue::Create(const GString& name, size_t capacity, uint64_t keeper,
                                                     const GBuffer& notice)
{
    const size_t noticeSize = static_cast<size_t>(notice.size());
    if (noticeSize > GMessageRing::cMostNotice)
        RaiseSegmentError(QStringLiteral("The notice of the message queue \"%1\" is too long."), name);
    const size_t size =
        GMessageRing::cHeaderSize + std::max(capacity, GMessageRing::cLeastCapacity) + noticeSize;
    const uint32_t processID = GProcessInfo::GetOwnProcessID();
    const Owner owner{processID, GProcessInfo::GetStartTime(processID), keeper,
                      QRandomGenerator::system()->generate64(), notice};
    try {
        // A lock and a semaphore that were left may be in any state.
        Remove(name);
        auto segment = std::make_unique<GSharedSegment>(name, size, GSharedSegment::Mode::CreateNew);
        const GMessageRing ring = GMessageRing::Make(segment->GetData(), size, owner);
        return std::unique_ptr<GMessageQueue>(
            new GMessageQueue(name, std::move(segment), ring, GInterProcessMutex::Mode::OpenOrCreate));
    } catch (const GException&) {
        Remove(name);
        throw;
    }
}

std::unique_ptr<GMessageQueue> GMessageQueue::Open(const GString& name)
{
    auto segment = OpenSegment(name);
    const GMessageRing ring = GMessageRing::Open(segment->GetData(), segment->GetSize());
    return std::unique_ptr<GMessageQueue>(
        new GMessageQueue(name, std::move(segment), ring, GInterProcessMutex::Mode::Open));
}

std::unique_ptr<GMessageQueue> GMessageQueue::OpenLeft(const GString& name)
{
    try {
        return Open(name);
    } catch (const GException&) {
        auto segment = OpenSegment(name);
        const GMessageRing ring = GMessageRing::Open(segment->GetData(), segment->GetSize());
        if (IsAlive(ring.GetOwner()) && !GSharedSegment::IsThere(GetLockName(name)))
            RaiseSegmentDamage(QStringLiteral("The message queue \"%1\" has no lock."), name);
        if (IsAlive(ring.GetOwner()))
            throw;
        GInterProcessMutex::Remove(GetLockName(name));
        GInterProcessSemaphore::Remove(GetSemaphoreName(name));
        return std::unique_ptr<GMessageQueue>(
            new GMessageQueue(name, std::move(segment), ring, GInterProcessMutex::Mode::OpenOrCreate));
    }
}

GMessageQueue::GMessageQueue(const GString& name, std::unique_ptr<GSharedSegment> segment,
                             const GMessageRing& ring, GInterProcessMutex::Mode mode)
    : mSegment(std::move(segment)),
      mMutex(GetLockName(name), mode),
      mSemaphore(mode == GInterProcessMutex::Mode::Open
                     ? GInterProcessSemaphore::TryToOpen(GetSemaphoreName(name))
                     : std::make_unique<GInterProcessSemaphore>(GetSemaphoreName(name), 0)),
      mRing(ring),
      mOwner(ring.GetOwner())
{
}

void GMessageQueue::Post(const GBuffer& message, const GPostPolicy& policy)
{
    const uint64_t end = PutIn(message, policy);
    if (GSharedSegment::OutlivesItsUsers() || mOwner.keeper == 0)
        return;
    // Who posts to himself can't wait for himself, and can't outlive the queue either.
    if (mOwner.processID != GProcessInfo::GetOwnProcessID())
        SeeToItsTaking(message, end, policy.limit);
}

// Gives the place behind the message.
uint64_t GMessageQueue::PutIn(const GBuffer& message, const GPostPolicy& policy)
{
    uint64_t end = 0;
    // The usual case, without a look at the clock.
    if (TryPost(message, std::chrono::milliseconds(0), &end))
        return end;
    const Clock::time_point deadline = Clock::now() + policy.limit;
    while (true) {
        const Clock::time_point next = std::min(Clock::now() + policy.interval, deadline);
        if (TryPost(message, GetRemaining(next), &end))
            return end;
        if (Clock::now() >= deadline)
            RaisePostError("the receiver's queue stayed busy.");
        if (!IsOwnerAlive())
            RaisePostError("the receiver has ended.");
        std::this_thread::sleep_until(next);
    }
}

// The owner may die meanwhile, and the next process of its keeper take the message: this one has the queue
// open.
bool GMessageQueue::WaitUntilTaken(uint64_t end, std::chrono::milliseconds limit) const
{
    const Clock::time_point deadline = Clock::now() + limit;
    while (!mRing.HasForgotten(end)) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(cTakenPause);
    }
    return true;
}

// Without the lock it can't be said what stands in the message's place.
GMessageRing::Withdrawal GMessageQueue::Withdraw(const GBuffer& message, uint64_t end,
                                                 std::chrono::milliseconds limit)
{
    if (!mMutex.Lock(limit))
        return GMessageRing::Withdrawal::TakenUp;
    const GMessageRing::Withdrawal result = mRing.Withdraw(message, end);
    mMutex.Unlock();
    return result;
}

// What the owner looks at is kept, or given back, in a moment.
void GMessageQueue::SeeToItsTaking(const GBuffer& message, uint64_t end, std::chrono::milliseconds limit)
{
    using Withdrawal = GMessageRing::Withdrawal;
    if (WaitUntilTaken(end, limit))
        return;
    Withdrawal result = Withdraw(message, end, limit);
    if (result == Withdrawal::TakenUp) {
        if (WaitUntilTaken(end, limit))
            return;
        result = Withdraw(message, end, limit);
    }
    if (result == Withdrawal::Done)
        RaisePostError("the receiver has not taken it.");
    if (result == Withdrawal::TakenUp)
        RaisePostError("the receiver has not taken it; it may still do so.");
}

// False when it is worth another attempt.
bool GMessageQueue::TryPost(const GBuffer& message, std::chrono::milliseconds lockTime, uint64_t* end)
{
    if (!mMutex.Lock(lockTime))
        return false;
    const GMessageRing::PutResult result = mRing.Put(message);
    *end = mRing.GetEnd();
    mMutex.Unlock();
    if (mSegment->IsLost() || mMutex.IsLost())
        throw GQueueIsPast(GErrorCode::cPostMessage,
                           QStringLiteral("The memory of the receiver's queue was cut short."));
    switch (result) {
        case GMessageRing::PutResult::DoneAsFirst:
            WakeUp();
            return true;
        case GMessageRing::PutResult::Done:
            return true;
        case GMessageRing::PutResult::Full:
        case GMessageRing::PutResult::Damaged:
            return false;
        case GMessageRing::PutResult::TooLarge:
            RaisePostError("it is larger than the receiver's queue.");
        case GMessageRing::PutResult::Unsure:
            RaisePostError("the receiver ended meanwhile; it may have the message or not.");
        case GMessageRing::PutResult::Closed:
            break;
    }
    throw GQueueIsPast(GErrorCode::cPostMessage, QStringLiteral("The receiver takes no more messages."));
}

std::vector<GMessageQueue::Entry> GMessageQueue::Peek(size_t most)
{
    bool isDamaged = false;
    std::vector<Entry> entries = mRing.Peek(most, &isDamaged);
    if (isDamaged)
        GTrace::Error(QStringLiteral("GMessageQueue::Peek"),
                      QStringLiteral("A message queue was damaged; what stood behind the damage is lost."));
    return entries;
}

bool GMessageQueue::WaitForMessage(std::chrono::milliseconds timeout)
{
    return mSemaphore->Acquire(timeout);
}

void GMessageQueue::WakeUp()
{
    try {
        if (mSemaphore)
            mSemaphore->Release();
    } catch (const GException& error) {
        // The message is there, and the owner looks from time to time.
        GTrace::Debug(QStringLiteral("GMessageQueue::WakeUp"), error.GetDescription());
    }
}

void GMessageQueue::Close()
{
    try {
        const auto lock =
            mMutex.IsIntact() ? std::make_unique<GInterProcessLock>(mMutex, cCloseTime) : nullptr;
        mRing.Close();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GMessageQueue::Close"), error.GetDescription());
        mRing.Close();
    }
}

bool GMessageQueue::IsOwnerAlive() const
{
    return IsAlive(mOwner);
}

bool GMessageQueue::IsCurrent() const
{
    return mSegment->IsCurrent() && mMutex.IsCurrent() && (!mSemaphore || mSemaphore->IsCurrent());
}

void GMessageQueue::Remove(const GString& name)
{
    static_cast<void>(GSharedSegment::Remove(name));  // another's: it is not for us to remove
    try {
        GInterProcessMutex::Remove(GetLockName(name));
        GInterProcessSemaphore::Remove(GetSemaphoreName(name));
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GMessageQueue::Remove"), error.GetDescription());
    }
}
