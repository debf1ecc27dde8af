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

// Who keeps a receiver's messages, so that none is lost when the process is killed.
struct GPPIPCKeeper
{
    // By this number the keeper finds the queue that the process left. The same for every process that keeps
    // to the same place, no other one's, and not 0. Two processes must not use one number at once.
    uint64_t number = 0;

    // Is called with messages that are still in the queue; afterwards the queue forgets them. What it raises
    // leaves them there, for the next tick, unless their senders withdraw them meanwhile. One that was kept
    // when the process was killed comes again: it has the same `queue` and `position`. Must be quick: the
    // queue fills meanwhile, and senders wait.
    std::function<void(const std::vector<GPPIPCMessage>& messages)> keep;
};

// Receives the messages that any process of the user posts to this one. They are taken up on the process's
// tick, which comes at once when a message comes in, and handed over one by one in the order of each sender.
//
// About once a second it looks whether senders still find it: where its names were taken away, the directory
// was emptied or a better place has appeared, it registers again, and nothing that was posted is lost.
//
// Lives on one thread, the one that runs the tick. What the handler throws is logged and costs only that
// message. A handler may run an event loop: what comes meanwhile waits in the queue until it returns. It must
// not destroy the receiver.
class GPPIPCReceiver : private GReceiver<GTick>
{
public:
    using Handler = std::function<void(const GPPIPCMessage& message)>;

    static constexpr size_t cNoLimit = std::numeric_limits<size_t>::max();

    // Hands what dead processes of the keeper left to it (not to the handler), then registers the receiver.
    // It takes at most `limit` messages. Senders are told to post what is for one of the addresses only;
    // whoever does not keep to that is taken up all the same. Raises as GPPIPCChannel::Register does, and
    // what the keeper raises.
    explicit GPPIPCReceiver(Handler handler, GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor,
                            GPPIPCKeeper keeper = {}, size_t limit = cNoLimit,
                            GPPIPCAddresses addresses = {});

    // Takes no more messages, hands over those that are there, whose senders count on it, and deregisters.
    // What it may not take, for its limit or its keeper, stays for the keeper's next process.
    ~GPPIPCReceiver() override;
    GPPIPCReceiver(const GPPIPCReceiver&) = delete;
    GPPIPCReceiver& operator=(const GPPIPCReceiver&) = delete;

    // What each tick does: hands over everything that is there now.
    void TakeUp();

    // What a tick does about once a second: sees to it that senders find the receiver. What can't be done is
    // logged, and tried again the next time.
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
    std::vector<Place> mPast;  // closed; what they hold is still taken up, and then they go
    std::chrono::steady_clock::time_point mNextLook;
    GString mLastTrouble;
    GString mTakeOverTrouble;
    bool mHasTakenOver = false;
    bool mIsHandingOver = false;
};
