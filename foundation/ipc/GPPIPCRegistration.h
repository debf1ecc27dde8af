#pragma once

#include "foundation/ipc/GPPIPCChannel.h"

#include <atomic>
#include <memory>
#include <thread>

// A receiver's entry in one channel: its pair, its queue, and the thread that wakes the process's tick when a
// message arrives. Used on one thread.
class GPPIPCRegistration
{
public:
    // Registers the receiver. Raises as GPPIPCChannel::Register does.
    GPPIPCRegistration(const std::shared_ptr<GPPIPCChannel>& channel, uint32_t receiver, uint64_t keeper,
                       const GPPIPCAddresses& addresses);

    // Only stops the thread.
    ~GPPIPCRegistration();
    GPPIPCRegistration(const GPPIPCRegistration&) = delete;
    GPPIPCRegistration& operator=(const GPPIPCRegistration&) = delete;

    const GPPIPCChannel& GetChannel() const { return *mChannel; }

    // None when somebody has made the queue's memory smaller.
    GMessageQueue* GetQueue() const { return mQueue->IsIntact() ? mQueue.get() : nullptr; }

    // Whether senders find the queue under its name. If only the pair is missing in the directory, it is
    // added again. Raises as GPPIPCChannel does.
    [[nodiscard]] bool Renew();

    // From now on no messages can be put in.
    void Close();

    // Removes the entry from the channel, except messages that a keeper will take over.
    void Deregister();

private:
    bool IsListed();
    void WaitForMessages();

    const std::shared_ptr<GPPIPCChannel> mChannel;
    const uint32_t mReceiver;
    const std::unique_ptr<GMessageQueue> mQueue;
    std::atomic<bool> mIsEnding{false};
    std::thread mWaiter;
};
