#include "foundation/core/GSignalLink.h"

#include <algorithm>

using Messages = std::vector<std::unique_ptr<GDelayedMessageBase>>;

static void Consolidate(Messages& messages)
{
    Messages kept;
    for (auto message = messages.rbegin(); message != messages.rend(); ++message) {
        const auto isSame = [&](const auto& other) {
            return other->GetMessage() == (*message)->GetMessage();
        };
        if (std::none_of(kept.begin(), kept.end(), isSame))
            kept.push_back(std::move(*message));
    }
    std::reverse(kept.begin(), kept.end());
    messages = std::move(kept);
}

std::vector<std::unique_ptr<GDelayedMessageBase>> GSignalLink::TakeDelayed()
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    isConsolidationPending = false;
    Messages messages;
    messages.swap(delayed);
    Consolidate(messages);
    return messages;
}

void GSignalLink::Deliver(const GDelayedMessageBase& message)
{
    const std::lock_guard<std::recursive_mutex> lock(mutex);
    receivers.CallEach([&](GReceiverBase& receiver) { message.DeliverTo(receiver); });
}
