#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class GReceiverBase;
class GSignalLink;

// A message that waits for its delivery from the message loop, with a copy of its data.
class GDelayedMessageBase
{
public:
    explicit GDelayedMessageBase(int32_t message) : mMessage(message) {}
    virtual ~GDelayedMessageBase();
    GDelayedMessageBase(const GDelayedMessageBase&) = delete;
    GDelayedMessageBase& operator=(const GDelayedMessageBase&) = delete;

    int32_t GetMessage() const { return mMessage; }
    virtual void DeliverTo(GReceiverBase& receiver) const = 0;

private:
    int32_t mMessage;
};

// What receivers of any data have in common: they know the signals that they are attached to, and detach when
// they are deleted.
class GReceiverBase
{
public:
    GReceiverBase() = default;
    virtual ~GReceiverBase();
    GReceiverBase(const GReceiverBase&) = delete;
    GReceiverBase& operator=(const GReceiverBase&) = delete;

    // Waits for a delivery that is running on another thread. A receiver that gets signals from other threads
    // must call this first in its own destructor: when the base's destructor runs, half of the receiver is
    // already destroyed.
    void DetachFromAll();

private:
    friend class GSignalBase;

    void Forget(const std::shared_ptr<GSignalLink>& link);

    std::mutex mMutex;  // guards mLinks and nothing else
    std::vector<std::weak_ptr<GSignalLink>> mLinks;
};

// What signals of any data have in common: the receivers, the lock, and the delayed messages.
class GSignalBase
{
public:
    GSignalBase(const GSignalBase&) = delete;
    GSignalBase& operator=(const GSignalBase&) = delete;

    // From now on each emission delivers twice: at once, and once more from the message loop.
    void SetDelayed(bool isDelayed);

protected:
    GSignalBase();
    ~GSignalBase();  // waits for an emission that is running on another thread

    void AttachReceiver(GReceiverBase& receiver);
    void DetachReceiver(GReceiverBase& receiver);

    using Delivery = std::function<void(GReceiverBase&)>;
    using MakeDelayedMessage = std::function<std::unique_ptr<GDelayedMessageBase>()>;

    // Calls each receiver under the lock; if the signal is delayed, then queues a message.
    void EmitTo(const Delivery& deliver, const MakeDelayedMessage& makeMessage);

private:
    // Adds the message to the signal's queue, and asks the message loop to deliver the queue unless that was
    // asked before.
    static void QueueDelayedSignal(const std::shared_ptr<GSignalLink>& link,
                                   std::unique_ptr<GDelayedMessageBase> message);

    std::shared_ptr<GSignalLink> mLink;
};
