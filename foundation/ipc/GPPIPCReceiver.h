#pragma once

#include "foundation/core/GMessageLoop.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/ipc/GPPIPCMessage.h"

#include <deque>
#include <functional>
#include <memory>
#include <vector>

class GMessageQueue;

// Receives the messages that any process of the user posts to this one. They are taken up on the process's
// tick, and handed over one by one in the order of each sender.
//
// Lives on one thread, the one that runs the tick. What the handler throws is logged and costs only that
// message. A handler may run an event loop: what comes meanwhile waits until it returns. It must not destroy
// the receiver.
class GPPIPCReceiver : private GReceiver<GTick>
{
public:
    using Handler = std::function<void(const GPPIPCMessage& message)>;

    // Registers the receiver. Raises as GPPIPCManager::Get does, and when the channel has no room for
    // another.
    explicit GPPIPCReceiver(Handler handler, GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor);

    // Takes no more messages, hands over those that are there, whose senders count on it, and deregisters.
    ~GPPIPCReceiver() override;
    GPPIPCReceiver(const GPPIPCReceiver&) = delete;
    GPPIPCReceiver& operator=(const GPPIPCReceiver&) = delete;

    // What each tick does: hands over everything that is there now.
    void TakeUp();

private:
    struct Entry
    {
        GPPIPCChannel* channel;
        std::unique_ptr<GMessageQueue> queue;
    };

    void Receive(int32_t message, const GTick& tick) override;
    void Register(GPPIPCChannel* channel);
    void Deregister();
    void Collect(GMessageQueue* queue);
    void HandOver(const GPPIPCMessage& message);

    Handler mHandler;
    std::shared_ptr<GPPIPCManager> mManager;
    const uint32_t mReceiverID;
    std::vector<Entry> mEntries;
    std::deque<GPPIPCMessage> mWaiting;
    bool mIsHandingOver = false;
};
