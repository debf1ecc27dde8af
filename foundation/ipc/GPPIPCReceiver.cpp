#include "foundation/ipc/GPPIPCReceiver.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

#include <algorithm>
#include <exception>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds cLookInterval(1000);
constexpr int cMostFailures = 4;  // to look whether a number can be used
constexpr size_t cBatch = 256;    // messages that a keeper gets at a time

// More than a queue holds. Who is posted to without a pause still has to see to other things.
constexpr size_t cMostAtOnce = 16384;

// True as long as it lives.
class Flag
{
public:
    explicit Flag(bool* flag) : mFlag(flag) { *mFlag = true; }
    ~Flag() { *mFlag = false; }
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

private:
    bool* mFlag;
};
}  // namespace

GPPIPCReceiver::GPPIPCReceiver(Handler handler, GPPIPCChannelKind kind, GPPIPCKeeper keeper, size_t limit,
                               GPPIPCAddresses addresses)
    : mHandler(std::move(handler)),
      mKeeper(std::move(keeper)),
      mAddresses(std::move(addresses)),
      mRest(limit),
      mManager(GPPIPCManager::Get(kind)),
      mNextLook(Clock::now() + cLookInterval)
{
    TakeOverLeftMessages();
    ChooseReceiverID();
    Register(&mSession, mManager->GetSessionChannels().front());
    // The session's channel serves alone where the system does not let the global one be made.
    try {
        if (const std::shared_ptr<GPPIPCChannel> global = mManager->GetGlobalChannel())
            Register(&mGlobal, global);
    } catch (const GException& error) {
        GTrace::Debug(QStringLiteral("GPPIPCReceiver::GPPIPCReceiver"), error.GetDescription());
    }
    GMessageLoop::GetTickSignal().Attach(*this);
}

// Process numbers come again, quickly so in a container: a dead one of this number may have left messages. A
// single queue that can't be opened is passed over as well, but not for ever: it may be the whole place.
void GPPIPCReceiver::ChooseReceiverID()
{
    const std::shared_ptr<GPPIPCChannel> best = mManager->GetSessionChannels().front();
    for (int failures = 0;;) {
        mReceiverID = GPPIPCManager::MakeReceiverID();
        try {
            if (!best->HoldsMessagesOf(mReceiverID))
                return;
        } catch (const GException&) {
            if (++failures == cMostFailures)
                throw;
        }
    }
}

void GPPIPCReceiver::Register(Place* place, const std::shared_ptr<GPPIPCChannel>& channel)
{
    *place = std::make_unique<GPPIPCRegistration>(channel, mReceiverID, mKeeper.number, mAddresses);
}

bool GPPIPCReceiver::IsIn(const Place& place, const GPPIPCChannel& channel)
{
    return place && &place->GetChannel() == &channel;
}

// Nothing more is posted there; what it holds is taken up now or later.
void GPPIPCReceiver::GiveUp(Place* place)
{
    (*place)->Close();
    mPast.push_back(std::move(*place));
}

// Sees to it that the receiver stands in the channel, or does later, when its past queue there is empty.
//
// The order of the steps keeps two promises: a kill at any moment loses nothing that was posted, and a
// receiver that is found somewhere is found all the time.
// - In the channel where it stands, a new queue takes the names of the old one, so that what this still holds
//   would be lost with them: the old one is closed, emptied and deregistered before the new one is made.
// - In another channel nothing bears those names: the new queue is made first, and only when that has worked
//   the old one is closed. Until it is emptied, it keeps its names for whoever comes after a kill.
void GPPIPCReceiver::StandIn(const std::shared_ptr<GPPIPCChannel>& channel)
{
    if (IsIn(mSession, *channel)) {
        if (mSession->Renew())
            return;
        GiveUp(&mSession);
    }
    TakeUp();
    if (std::any_of(mPast.cbegin(), mPast.cend(), [&](const Place& past) { return IsIn(past, *channel); }))
        return;
    Place place;
    Register(&place, channel);
    if (mSession)
        GiveUp(&mSession);
    mSession = std::move(place);
    TakeUp();
    GTrace::Error(QStringLiteral("GPPIPCReceiver::StandIn"),
                  QStringLiteral("Senders did not find this receiver any more, or there is a better place; "
                                 "it is registered again."));
}

// In the best channel where senders can find it.
void GPPIPCReceiver::FindPlace()
{
    std::exception_ptr failure;
    for (const std::shared_ptr<GPPIPCChannel>& channel : mManager->GetSessionChannels()) {
        try {
            StandIn(channel);
            break;
        } catch (const GException&) {
            failure = failure ? failure : std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

// What fails is tried again at the next look: the messages stay where they are.
void GPPIPCReceiver::TakeOverLeftMessages()
{
    if (mKeeper.number == 0 || mHasTakenOver)
        return;
    GString trouble;
    for (const std::shared_ptr<GPPIPCChannel>& channel : mManager->GetSessionChannels()) {
        try {
            channel->TakeOver(mKeeper.number, [this](GMessageQueue& queue) {
                size_t all = cNoLimit;
                TakeUpFrom(&queue, &all, {});
            });
        } catch (const std::exception& error) {
            trouble = GString::fromUtf8(error.what());
        }
    }
    mHasTakenOver = trouble.isEmpty();
    if (trouble != mTakeOverTrouble)
        GTrace::Error(QStringLiteral("GPPIPCReceiver::TakeOverLeftMessages"), trouble);
    mTakeOverTrouble = trouble;
}

void GPPIPCReceiver::Receive(int32_t message, const GTick&)
{
    if (message != GMessageLoop::cTickMessage)
        return;
    TakeUp();
    if (Clock::now() < mNextLook || mIsHandingOver)
        return;
    mNextLook = Clock::now() + cLookInterval;
    LookAfterPlaces();
}

void GPPIPCReceiver::LookAfterPlaces()
{
    GString trouble;
    TakeOverLeftMessages();
    try {
        FindPlace();
        // Names of that kind last as long as their objects: only the directory can have lost the pair.
        if (mGlobal)
            static_cast<void>(mGlobal->Renew());
    } catch (const std::exception& error) {
        trouble = GString::fromUtf8(error.what());
        if (trouble != mLastTrouble)
            GTrace::Error(QStringLiteral("GPPIPCReceiver::LookAfterPlaces"), trouble);
    }
    mLastTrouble = trouble;
}

GPPIPCReceiver::~GPPIPCReceiver()
{
    GMessageLoop::GetTickSignal().Detach(*this);
    for (const Place* place : {&mSession, &mGlobal}) {
        if (*place)
            (*place)->Close();
    }
    TakeUp();
    for (const Place* place : {&mSession, &mGlobal}) {
        if (*place)
            Deregister(place->get());
    }
}

void GPPIPCReceiver::Deregister(GPPIPCRegistration* place)
{
    try {
        place->Deregister();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::Deregister"), error.GetDescription());
    }
}

void GPPIPCReceiver::TakeUp()
{
    if (mIsHandingOver)
        return;
    const Flag flag(&mIsHandingOver);
    try {
        for (const Place& place : mPast)
            TakeUpFrom(place->GetQueue(), &mRest, mHandler);
        for (const Place* place : {&mSession, &mGlobal}) {
            if (*place)
                TakeUpFrom((*place)->GetQueue(), &mRest, mHandler);
        }
        DropPastPlaces();
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::TakeUp"), GString::fromUtf8(error.what()));
    }
}

void GPPIPCReceiver::DropPastPlaces()
{
    const auto isDone = [this](const Place& place) {
        const GMessageQueue* const queue = place->GetQueue();
        if (queue != nullptr && !queue->IsEmpty())
            return false;
        Deregister(place.get());
        return true;
    };
    mPast.erase(std::remove_if(mPast.begin(), mPast.end(), isDone), mPast.end());
}

void GPPIPCReceiver::TakeUpFrom(GMessageQueue* queue, size_t* rest, const Handler& handler)
{
    for (size_t taken = 0; queue != nullptr && *rest > 0;) {
        if (taken > cMostAtOnce) {
            GMessageLoop::TickSoon();
            return;
        }
        const std::vector<GMessageQueue::Entry> entries = queue->Peek(std::min(*rest, cBatch));
        if (entries.empty())
            return;
        const std::vector<GPPIPCMessage> messages =
            Decode(entries, queue->GetOwner().number, handler ? mReceiverID : 0);
        Keep(queue, entries, messages);
        queue->Forget(entries.back());
        taken += entries.size();
        for (const GPPIPCMessage& message : messages) {
            *rest -= *rest == cNoLimit ? 0 : 1;
            if (handler)
                HandOver(message);
        }
    }
}

void GPPIPCReceiver::Keep(GMessageQueue* queue, const std::vector<GMessageQueue::Entry>& entries,
                          const std::vector<GPPIPCMessage>& messages) const
{
    try {
        if (mKeeper.keep)
            mKeeper.keep(messages);
    } catch (...) {
        queue->GiveBack(entries);
        throw;
    }
}

// What was left by another is read whatever receiver it names, for which `receiver` is 0: a dead process may
// have had this one's number.
std::vector<GPPIPCMessage> GPPIPCReceiver::Decode(const std::vector<GMessageQueue::Entry>& entries,
                                                  uint64_t queue, uint32_t receiver)
{
    std::vector<GPPIPCMessage> messages;
    for (const GMessageQueue::Entry& entry : entries) {
        GPPIPCMessage message;
        if (!GPPIPCMessage::Decode(entry.message, &message) ||
            (receiver != 0 && message.receiver != receiver)) {
            GTrace::Error(QStringLiteral("GPPIPCReceiver::Decode"),
                          QStringLiteral("A queued message does not check and is skipped."));
            continue;
        }
        message.queue = queue;
        message.position = entry.position;
        message.isLeft = receiver == 0;
        messages.push_back(message);
    }
    return messages;
}

void GPPIPCReceiver::HandOver(const GPPIPCMessage& message)
{
    try {
        mHandler(message);
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::HandOver"), QString::fromUtf8(error.what()));
    } catch (...) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::HandOver"),
                      QStringLiteral("The handler threw something that is no exception."));
    }
}
