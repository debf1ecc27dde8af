#pragma once

#include "foundation/core/GAttachments.h"
#include "foundation/core/GSignalBase.h"

#include <memory>
#include <mutex>
#include <vector>

// The part of a signal that its receivers and the message loop hold on to. It outlives the signal while one
// of them uses it, which makes it safe to end a signal or a receiver from within a delivery.
class GSignalLink
{
public:
    // Takes the messages that are queued now: of those with one number the last one, in the order in which
    // they were queued last.
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
