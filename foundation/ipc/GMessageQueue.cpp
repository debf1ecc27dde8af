#include "foundation/ipc/GMessageQueue.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/trace/GTrace.h"

#include <algorithm>
#include <thread>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds cTakeTime(300);

GString GetLockName(const GString& name)
{
    return name + QLatin1String("_L");
}

[[noreturn]] void RaisePostError(const char* reason)
{
    throw GSimpleException(GErrorCode::cPostMessage,
                           QLatin1String("The message could not be posted: ") + QLatin1String(reason));
}

std::chrono::milliseconds GetRemaining(Clock::time_point deadline)
{
    return std::max(std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()),
                    std::chrono::milliseconds(0));
}
}  // namespace

std::unique_ptr<GMessageQueue> GMessageQueue::Create(const GString& name, size_t capacity)
{
    const size_t size = GMessageRing::cHeaderSize + std::max(capacity, GMessageRing::cLeastCapacity);
    const uint32_t processID = GProcessInfo::GetOwnProcessID();
    auto segment = std::make_unique<GSharedSegment>(name, size, GSharedSegment::Mode::CreateNew);
    const GMessageRing ring =
        GMessageRing::Make(segment->GetData(), size, {processID, GProcessInfo::GetStartTime(processID)});
    return std::unique_ptr<GMessageQueue>(
        new GMessageQueue(name, std::move(segment), ring, GInterProcessMutex::Mode::OpenOrCreate));
}

std::unique_ptr<GMessageQueue> GMessageQueue::Open(const GString& name)
{
    auto segment = std::make_unique<GSharedSegment>(
        name, GMessageRing::cHeaderSize + GMessageRing::cLeastCapacity, GSharedSegment::Mode::Open);
    const GMessageRing ring = GMessageRing::Open(segment->GetData(), segment->GetSize());
    return std::unique_ptr<GMessageQueue>(
        new GMessageQueue(name, std::move(segment), ring, GInterProcessMutex::Mode::Open));
}

GMessageQueue::GMessageQueue(const GString& name, std::unique_ptr<GSharedSegment> segment,
                             const GMessageRing& ring, GInterProcessMutex::Mode mode)
    : mSegment(std::move(segment)), mMutex(GetLockName(name), mode), mRing(ring)
{
}

void GMessageQueue::Post(const GBuffer& message, const GPostPolicy& policy)
{
    // The usual case, without a look at the clock.
    if (TryPost(message, std::chrono::milliseconds(0)))
        return;
    const Clock::time_point deadline = Clock::now() + policy.limit;
    while (true) {
        const Clock::time_point next = std::min(Clock::now() + policy.interval, deadline);
        if (TryPost(message, GetRemaining(next)))
            return;
        if (Clock::now() >= deadline)
            RaisePostError("the receiver's queue stayed busy.");
        if (!IsOwnerAlive())
            RaisePostError("the receiver has ended.");
        std::this_thread::sleep_until(next);
    }
}

// False when it is worth another attempt.
bool GMessageQueue::TryPost(const GBuffer& message, std::chrono::milliseconds lockTime)
{
    if (!mMutex.Lock(lockTime))
        return false;
    const GMessageRing::PutResult result = mRing.Put(message);
    mMutex.Unlock();
    switch (result) {
        case GMessageRing::PutResult::Done:
            return true;
        case GMessageRing::PutResult::Full:
        case GMessageRing::PutResult::Damaged:
            return false;
        case GMessageRing::PutResult::TooLarge:
            RaisePostError("it is larger than the receiver's queue.");
        case GMessageRing::PutResult::Closed:
            break;
    }
    RaisePostError("the receiver takes no more messages.");
}

std::vector<GBuffer> GMessageQueue::TakeAll()
{
    if (!mMutex.Lock(cTakeTime))
        return {};
    bool isDamaged = false;
    std::vector<GBuffer> messages = mRing.TakeAll(&isDamaged);
    mMutex.Unlock();
    if (isDamaged)
        GTrace::Error(QStringLiteral("GMessageQueue::TakeAll"),
                      QStringLiteral("A message queue was damaged and has been emptied."));
    return messages;
}

void GMessageQueue::Close()
{
    const GInterProcessLock lock(mMutex);
    mRing.Close();
}

bool GMessageQueue::IsOwnerAlive() const
{
    const GMessageRing::Owner owner = mRing.GetOwner();
    return GProcessInfo::IsAlive(owner.processID) &&
           GProcessInfo::GetStartTime(owner.processID) == owner.startTime;
}

void GMessageQueue::Remove(const GString& name)
{
    GSharedSegment::Remove(name);
    try {
        GInterProcessMutex::Remove(GetLockName(name));
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GMessageQueue::Remove"), error.GetDescription());
    }
}
