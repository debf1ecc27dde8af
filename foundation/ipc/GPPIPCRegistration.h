#pragma once

#include "foundation/ipc/GPPIPCChannel.h"

#include <atomic>
#include <memory>
#include <thread>

// A receiver's entry in one channel: its pair, its queue, and the thread that wakes the process's tick when
// something comes in. Used on one thread.
class GPPIPCRegistration
{
public:
    // Enters the receiver. Raises as GPPIPCChannel::Register does.
    GPPIPCRegistration(const std::shared_ptr<GPPIPCChannel>& channel, uint32_t receiver, uint64_t keeper,
                       const GPPIPCAddresses& addresses);

    // Only stops the thread.
    ~GPPIPCRegistration();
    GPPIPCRegistration(const GPPIPCRegistration&) = delete;
    GPPIPCRegistration& operator=(const GPPIPCRegistration&) = delete;

    const GPPIPCChannel& GetChannel() const { return *mChannel; }

    // None when somebody has cut the queue's memory short.
    GMessageQueue* GetQueue() const { return mQueue->IsIntact() ? mQueue.get() : nullptr; }

    // Whether senders find the queue under its name. Where only the directory has lost the pair, it is
    // entered again. Raises as GPPIPCChannel does.
    [[nodiscard]] bool Renew();

    // No more messages are put in.
    void Close();

    // Takes the entry out of the channel, but for messages that somebody will take over.
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
