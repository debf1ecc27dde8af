#include "foundation/core/GSignalBase.h"

#include "foundation/core/GMessageLoop.h"
#include "foundation/core/GSignalLink.h"

#include <algorithm>

using Lock = std::lock_guard<std::recursive_mutex>;

GDelayedMessageBase::~GDelayedMessageBase() = default;

GReceiverBase::~GReceiverBase()
{
    DetachFromAll();
}

void GReceiverBase::DetachFromAll()
{
    std::vector<std::weak_ptr<GSignalLink>> links;
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        links.swap(mLinks);
    }
    for (const auto& weak : links) {
        if (const auto link = weak.lock()) {
            const Lock lock(link->mutex);
            link->receivers.Detach(*this);
        }
    }
}

GSignalBase::GSignalBase() : mLink(std::make_shared<GSignalLink>()) {}

GSignalBase::~GSignalBase()
{
    const Lock lock(mLink->mutex);
    mLink->receivers.DetachAll();
    mLink->delayed.clear();
    mLink->isSignalAlive = false;
}

void GSignalBase::SetDelayed(bool isDelayed)
{
    const Lock lock(mLink->mutex);
    mLink->isDelayed = isDelayed;
}

static bool IsSameOrGone(const std::weak_ptr<GSignalLink>& weak, const std::shared_ptr<GSignalLink>& link)
{
    const auto held = weak.lock();
    return held == nullptr || held == link;
}

void GSignalBase::AttachReceiver(GReceiverBase& receiver)
{
    const Lock lock(mLink->mutex);
    mLink->receivers.Attach(receiver);
    const std::lock_guard<std::mutex> receiverLock(receiver.mMutex);
    auto& links = receiver.mLinks;
    links.erase(std::remove_if(links.begin(), links.end(),
                               [&](const auto& weak) { return IsSameOrGone(weak, mLink); }),
                links.end());
    links.push_back(mLink);
}

void GSignalBase::DetachReceiver(GReceiverBase& receiver)
{
    const Lock lock(mLink->mutex);
    mLink->receivers.Detach(receiver);
    const std::lock_guard<std::mutex> receiverLock(receiver.mMutex);
    auto& links = receiver.mLinks;
    links.erase(std::remove_if(links.begin(), links.end(),
                               [&](const auto& weak) { return IsSameOrGone(weak, mLink); }),
                links.end());
}

void GSignalBase::EmitTo(const Delivery& deliver, const MakeDelayedMessage& makeMessage)
{
    const std::shared_ptr<GSignalLink> link = mLink;  // a receiver may end this signal
    const Lock lock(link->mutex);
    link->receivers.CallEach(deliver);
    if (link->isDelayed && link->isSignalAlive)
        QueueDelayedSignal(link, makeMessage());
}

void GSignalBase::QueueDelayedSignal(const std::shared_ptr<GSignalLink>& link,
                                     std::unique_ptr<GDelayedMessageBase> message)
{
    link->delayed.push_back(std::move(message));
    if (link->isConsolidationPending)
        return;
    link->isConsolidationPending = true;
    GMessageLoop::Queue(link);
}
