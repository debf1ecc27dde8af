#pragma once

#include "foundation/core/GAttachments.h"
#include "foundation/core/GSignalBase.h"

#include <memory>
#include <mutex>
#include <vector>

// The part of a signal that its receivers and the message loop keep. It outlives the signal while one of them
// uses it. So it is safe to delete a signal or a receiver from within a delivery.
class GSignalLink
{
public:
    // Takes the messages that are queued now. Of the messages with one number only the last is taken. The
    // order is the one in which these last messages were queued.
    std::vector<std::unique_ptr<GDelayedMessageBase>> TakeDelayed();

    // Calls each receiver that is attached now.
    void Deliver(const GDelayedMessageBase& message);

    // Recursive, so that a receiver may emit, attach and detach while it is being called.
    std::recursive_mutex mutex;

    // All under the lock.
    GAttachments<GReceiverBase> receivers;
    std::vector<std::unique_ptr<GDelayedMessageBase>> delayed;
    bool isDelayed = false;
    bool isConsolidationPending = false;
    bool isSignalAlive = true;
};
