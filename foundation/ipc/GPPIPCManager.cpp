#include "foundation/ipc/GPPIPCManager.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSessionInfo.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <set>

namespace
{
struct Managers
{
    std::mutex mutex;
    std::map<GPPIPCChannelKind, std::weak_ptr<GPPIPCManager>> byKind;
};

Managers& GetManagers()
{
    static Managers managers;
    return managers;
}

GString GetChannelName(const GString& prefix, GPPIPCChannelKind kind)
{
    return prefix + QString::number(static_cast<int>(kind)) + QLatin1String("_PP");
}

// What one post has come to: whom it reached, and why it did not reach the others.
struct Delivery
{
    std::set<uint32_t> served;
    GString failure;
    GString lookFailure;          // why a place could not be looked into
    bool isWorthAnother = false;  // a receiver may have moved
};

void PostToEach(GPPIPCChannel& channel, uint32_t process, const GString& address,
                const GPPIPCMessage& message, const GPostPolicy& policy, Delivery* delivery)
{
    std::vector<uint32_t> receivers;
    try {
        receivers = channel.GetReceivers(process);
    } catch (const GException& error) {
        // Counts only when no other place has a receiver of the process.
        delivery->lookFailure = error.GetDescription();
    }
    for (const uint32_t receiver : receivers) {
        // A receiver that is moving stands in two places.
        if (delivery->served.count(receiver) != 0)
            continue;
        try {
            if (channel.Post(process, receiver, address, message, policy))
                delivery->served.insert(receiver);
        } catch (const GQueueIsPast& error) {
            delivery->failure = error.GetDescription();
            delivery->isWorthAnother = true;
        } catch (const GException& error) {
            delivery->failure = error.GetDescription();
        }
    }
}

[[noreturn]] void RaisePostError(uint32_t process, const GString& reason)
{
    throw GCustomException(GErrorCode::cPostMessage,
                           QStringLiteral("Process %1: %2").arg(process).arg(reason));
}
}  // namespace

std::shared_ptr<GPPIPCManager> GPPIPCManager::Get(GPPIPCChannelKind kind)
{
    Managers& managers = GetManagers();
    const std::lock_guard<std::mutex> guard(managers.mutex);
    std::weak_ptr<GPPIPCManager>& known = managers.byKind[kind];
    std::shared_ptr<GPPIPCManager> manager = known.lock();
    if (!manager) {
        manager.reset(new GPPIPCManager(kind));
        known = manager;
    }
    return manager;
}

std::shared_ptr<GPPIPCChannel> GPPIPCManager::GetChannel(const GString& prefix)
{
    const GString name = GetChannelName(prefix, mKind);
    const std::lock_guard<std::mutex> guard(mMutex);
    std::shared_ptr<GPPIPCChannel>& channel = mChannels[name];
    if (!channel)
        channel = std::make_shared<GPPIPCChannel>(name);
    return channel;
}

GPPIPCManager::Channels GPPIPCManager::GetSessionChannels()
{
    Channels channels;
    for (const GString& prefix : GSessionInfo::GetObjectNamePrefixes())
        channels.push_back(GetChannel(prefix));
    return channels;
}

std::shared_ptr<GPPIPCChannel> GPPIPCManager::GetGlobalChannel()
{
    const GString prefix = GSessionInfo::GetGlobalObjectNamePrefix();
    return prefix != GSessionInfo::GetObjectNamePrefix() ? GetChannel(prefix) : nullptr;
}

GPPIPCManager::Channels GPPIPCManager::GetChannels(uint32_t process, bool* isGlobal)
{
    const bool isElsewhere = GSessionInfo::GetSessionID(process) != GSessionInfo::GetOwnSessionID();
    const std::shared_ptr<GPPIPCChannel> global = isElsewhere ? GetGlobalChannel() : nullptr;
    *isGlobal = global != nullptr;
    return global ? Channels{global} : GetSessionChannels();
}

GPPIPCState GPPIPCManager::GetReceiverState(uint32_t process, GResult* reason, const GString& address)
{
    bool isGlobal = false;
    GPPIPCState best = GPPIPCState::NoReceiver;
    GResult bestReason = GResult::Success();
    std::exception_ptr failure;  // of the best place
    const Channels channels = GetChannels(process, &isGlobal);
    for (const std::shared_ptr<GPPIPCChannel>& channel : channels) {
        GResult own = GResult::Success();
        GPPIPCState state = GPPIPCState::NoReceiver;
        try {
            state = channel->GetReceiverState(process, address, &own);
        } catch (const GException& error) {
            // A place that can't be looked into, such as one that another user holds, blocks nobody.
            bestReason = GResult::Failure(error.GetDescription(), error.GetCode());
            if (channel == channels.front())
                failure = std::current_exception();
        }
        if (bestReason.HasSucceeded() || state > best)
            bestReason = own;
        best = std::max(best, state);
    }
    if (failure && best == GPPIPCState::NoReceiver)
        std::rethrow_exception(failure);
    if (reason != nullptr)
        *reason = best == GPPIPCState::Reachable ? GResult::Success() : bestReason;
    return best;
}

void GPPIPCManager::Post(uint32_t process, int32_t kind, const GBuffer& payload, const GString& address)
{
    constexpr int cLooks = 3;
    bool isGlobal = false;
    const Channels channels = GetChannels(process, &isGlobal);
    GPPIPCMessage message;
    message.session = GSessionInfo::GetOwnSessionID();
    message.process = GProcessInfo::GetOwnProcessID();
    message.kind = kind;
    message.flag = isGlobal ? GPPIPCMessage::cThroughGlobalChannel : 0;
    message.payload = payload;
    Delivery delivery;
    for (int look = 0; look < cLooks; ++look) {
        delivery.failure.clear();
        delivery.isWorthAnother = false;
        for (const std::shared_ptr<GPPIPCChannel>& channel : channels)
            PostToEach(*channel, process, address, message, mPolicy, &delivery);
        if (!delivery.isWorthAnother)
            break;
    }
    if (!delivery.failure.isEmpty())
        RaisePostError(process, delivery.failure);
    if (delivery.served.empty() && !delivery.lookFailure.isEmpty())
        throw GCustomException(GErrorCode::cSegmentHeader, delivery.lookFailure);
    if (delivery.served.empty())
        RaisePostError(process, QStringLiteral("The process has no message receiver."));
}

GPPIPCManager::Channels GPPIPCManager::GetAllChannels()
{
    Channels channels = GetSessionChannels();
    if (const std::shared_ptr<GPPIPCChannel> global = GetGlobalChannel())
        channels.push_back(global);
    return channels;
}

std::vector<GPPIPCReceiverInfo> GPPIPCManager::Look()
{
    std::vector<GPPIPCReceiverInfo> all;
    for (const std::shared_ptr<GPPIPCChannel>& channel : GetAllChannels()) {
        for (const GPPIPCReceiverInfo& info : channel->Look()) {
            // A receiver that stands in two places is one.
            if (std::none_of(all.cbegin(), all.cend(), [&](const GPPIPCReceiverInfo& other) {
                    return other.process == info.process && other.receiver == info.receiver;
                }))
                all.push_back(info);
        }
    }
    return all;
}

size_t GPPIPCManager::CountStrayNames()
{
    size_t count = 0;
    for (const std::shared_ptr<GPPIPCChannel>& channel : GetAllChannels())
        count += channel->CountStrayNames();
    return count;
}

size_t GPPIPCManager::Clean(bool withMessages)
{
    size_t count = 0;
    for (const std::shared_ptr<GPPIPCChannel>& channel : GetAllChannels())
        count += channel->Clean(withMessages);
    return count;
}

// Never the same twice in a process.
uint32_t GPPIPCManager::MakeReceiverID()
{
    static std::atomic<uint32_t> last{0};
    return ++last;
}
