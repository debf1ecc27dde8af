#pragma once

#include "foundation/core/GSignalBase.h"

// Who takes messages that carry a value of the type Data.
template <typename Data>
class GReceiver : public GReceiverBase
{
public:
    // Called under the signal's lock. The data lives until the call returns. May emit, attach and detach, and
    // may end the signal and any receiver, itself included.
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
// A signal that is set to delayed also queues a copy of each message, and the receivers that are attached by
// then get it once more from GMessageLoop, on its thread. Messages of one number that wait at the same time
// are consolidated: the last one is delivered. What waits for a signal that ends, or for a receiver that
// ends, is dropped.
template <typename Data>
class GSignal : public GSignalBase
{
public:
    // Attaching twice is attaching once. A receiver attached during an emission is called from the next one
    // on; one detached is not called any more.
    void Attach(GReceiver<Data>& receiver) { AttachReceiver(receiver); }
    void Detach(GReceiver<Data>& receiver) { DetachReceiver(receiver); }

    // Calls each receiver in the order in which they were attached, under the signal's lock: emissions of one
    // signal come one after the other, except those that its own receivers make. What a receiver throws goes
    // to the caller; those behind it are not called, and nothing is queued.
    void Emit(int32_t message, const Data& data)
    {
        EmitTo(
            [&](GReceiverBase& receiver) { static_cast<GReceiver<Data>&>(receiver).Receive(message, data); },
            [&] { return std::make_unique<GDelayedMessage<Data>>(message, data); });
    }
};
