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

void GReceiverBase::Forget(const std::shared_ptr<GSignalLink>& link)
{
    const auto isSameOrGone = [&](const std::weak_ptr<GSignalLink>& weak) {
        const auto held = weak.lock();
        return held == nullptr || held == link;
    };
    const std::lock_guard<std::mutex> lock(mMutex);
    mLinks.erase(std::remove_if(mLinks.begin(), mLinks.end(), isSameOrGone), mLinks.end());
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

void GSignalBase::AttachReceiver(GReceiverBase& receiver)
{
    const Lock lock(mLink->mutex);
    mLink->receivers.Attach(receiver);
    receiver.Forget(mLink);
    const std::lock_guard<std::mutex> receiverLock(receiver.mMutex);
    receiver.mLinks.push_back(mLink);
}

void GSignalBase::DetachReceiver(GReceiverBase& receiver)
{
    const Lock lock(mLink->mutex);
    mLink->receivers.Detach(receiver);
    receiver.Forget(mLink);
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
