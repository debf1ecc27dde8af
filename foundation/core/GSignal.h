#pragma once

#include "foundation/core/GSignalBase.h"

// Receives messages that carry a value of the type Data.
template <typename Data>
class GReceiver : public GReceiverBase
{
public:
    // Called under the signal's lock. The data lives until the call returns. It may emit, attach and detach,
    // and may delete the signal and any receiver, including itself.
    virtual void Receive(int32_t message, const Data& data) = 0;
};

// A message with a copy of its data that waits for the message loop.
template <typename Data>
class GDelayedMessage : public GDelayedMessageBase
{
public:
    GDelayedMessage(int32_t message, const Data& data) : GDelayedMessageBase(message), mData(data) {}

    void DeliverTo(GReceiverBase& receiver) const override
    {
        static_cast<GReceiver<Data>&>(receiver).Receive(GetMessage(), mData);
    }

private:
    Data mData;
};

// A source of messages that carry a value of the type Data. Every operation may be called from any thread and
// from within Receive.
//
// A signal that is set to delayed also queues a copy of each message. GMessageLoop delivers the copy later,
// on its own thread, to the receivers that are attached at that time. If several messages with the same
// number are waiting, only the last one is delivered. Waiting messages are dropped when their signal or
// receiver is deleted.
template <typename Data>
class GSignal : public GSignalBase
{
public:
    // Attaching a receiver twice has no further effect. A receiver that is attached during an emission is
    // called from the next emission on; a receiver that is detached is not called any more.
    void Attach(GReceiver<Data>& receiver) { AttachReceiver(receiver); }
    void Detach(GReceiver<Data>& receiver) { DetachReceiver(receiver); }

    // Calls each receiver in the order in which they were attached, under the signal's lock: emissions of one
    // signal come one after the other, except those that its own receivers make. An exception from a receiver
    // goes to the caller; the receivers after it are not called, and nothing is queued.
    void Emit(int32_t message, const Data& data)
    {
        EmitTo(
            [&](GReceiverBase& receiver) { static_cast<GReceiver<Data>&>(receiver).Receive(message, data); },
            [&] { return std::make_unique<GDelayedMessage<Data>>(message, data); });
    }
};
