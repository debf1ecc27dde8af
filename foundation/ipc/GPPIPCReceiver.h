#pragma once

#include "foundation/core/GMessageLoop.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "foundation/ipc/GPPIPCRegistration.h"

#include <chrono>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

// Keeps a receiver's messages safe, so that none is lost when the process is killed.
struct GPPIPCKeeper
{
    // By this number the keeper finds the queue that the process left. It is the same for every process that
    // keeps messages in the same place, and different for all others; it is never 0. Two processes must not
    // use one number at the same time.
    uint64_t number = 0;

    // Called with messages that are still in the queue; afterwards the queue forgets them. If it raises, the
    // messages stay in the queue for the next tick, unless their senders withdraw them meanwhile. If the
    // process is killed while a message is being kept, that message comes again with the same `queue` and
    // `position`. Must be quick: the queue fills meanwhile, and senders wait.
    std::function<void(const std::vector<GPPIPCMessage>& messages)> keep;
};

// Receives the messages that any process of the user posts to this one. They are taken out on the process's
// tick, which comes at once when a message arrives. The handler gets them one by one; those of each sender
// come in the order in which they were sent.
//
// About once a second it checks whether senders still find it. If its names were removed, the directory was
// emptied or a better place has appeared, it registers again, and no posted message is lost.
//
// For use on one thread, the one that runs the tick. If the handler throws, that is logged and only that
// message is lost. A handler may run an event loop: messages that arrive meanwhile wait in the queue until
// the handler returns. The handler must not destroy the receiver.
class GPPIPCReceiver : private GReceiver<GTick>
{
public:
    using Handler = std::function<void(const GPPIPCMessage& message)>;

    static constexpr size_t cNoLimit = std::numeric_limits<size_t>::max();

    // Gives the messages that dead processes of the keeper left to the keeper (not to the handler), then
    // registers the receiver. It takes at most `limit` messages. Senders are told to post only messages for
    // one of the addresses; other messages are taken out anyway. Raises as GPPIPCChannel::Register does, and
    // what the keeper raises.
    explicit GPPIPCReceiver(Handler handler, GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor,
                            GPPIPCKeeper keeper = {}, size_t limit = cNoLimit,
                            GPPIPCAddresses addresses = {});

    // Accepts no more messages, gives those that are there to the handler, because their senders rely on
    // that, and deregisters. Messages that it can't take because of its limit or its keeper stay for the
    // keeper's next process.
    ~GPPIPCReceiver() override;
    GPPIPCReceiver(const GPPIPCReceiver&) = delete;
    GPPIPCReceiver& operator=(const GPPIPCReceiver&) = delete;

    // Called on each tick: gives all messages that are there now to the handler.
    void TakeUp();

    // Called by a tick about once a second: makes sure that senders find the receiver. A failure is logged,
    // and it is tried again the next time.
    void LookAfterPlaces();

private:
    // Where it is registered in the session, or in all sessions.
    using Place = std::unique_ptr<GPPIPCRegistration>;

    void Receive(int32_t message, const GTick& tick) override;
    void ChooseReceiverID();
    void Register(Place* place, const std::shared_ptr<GPPIPCChannel>& channel);
    static bool IsIn(const Place& place, const GPPIPCChannel& channel);
    void GiveUp(Place* place);
    void StandIn(const std::shared_ptr<GPPIPCChannel>& channel);
    void FindPlace();
    void TakeOverLeftMessages();
    void DropPastPlaces();
    void Deregister(GPPIPCRegistration* place);
    void TakeUpFrom(GMessageQueue* queue, size_t* rest, const Handler& handler);
    void Keep(GMessageQueue* queue, const std::vector<GMessageQueue::Entry>& entries,
              const std::vector<GPPIPCMessage>& messages) const;
    static std::vector<GPPIPCMessage> Decode(const std::vector<GMessageQueue::Entry>& entries, uint64_t queue,
                                             uint32_t receiver);
    void HandOver(const GPPIPCMessage& message);

    Handler mHandler;
    const GPPIPCKeeper mKeeper;
    const GPPIPCAddresses mAddresses;
    size_t mRest;  // of the limit
    std::shared_ptr<GPPIPCManager> mManager;
    uint32_t mReceiverID = 0;
    Place mSession;
    Place mGlobal;
    std::vector<Place> mPast;  // closed; their messages are still taken out, then they are removed
    std::chrono::steady_clock::time_point mNextLook;
    GString mLastTrouble;
    GString mTakeOverTrouble;
    bool mHasTakenOver = false;
    bool mIsHandingOver = false;
};
