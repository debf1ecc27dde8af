#include "foundation/ipc/GPPIPCChannel.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/trace/GTrace.h"

#include <algorithm>

namespace
{
constexpr size_t cQueueCapacity = 262144;
constexpr size_t cMostOpenQueues = 64;
}  // namespace

GPPIPCChannel::GPPIPCChannel(const GString& name)
    : mName(name),
      mSegment(name, GPPIPCDirectory::cSize, GSharedSegment::Mode::OpenOrCreate, GPPIPCDirectory::Prepare),
      mMutex(name + QLatin1String("_L"))
{
    const GInterProcessLock lock(mMutex);
    GPPIPCDirectory(mSegment.GetData()).GetPairs();
}

GString GPPIPCChannel::GetQueueName(const Pair& pair) const
{
    return QStringLiteral("%1_%2_%3")
        .arg(mName, QString::number(pair.process), QString::number(pair.receiver));
}

std::vector<uint32_t> GPPIPCChannel::GetReceivers(uint32_t process)
{
    const GInterProcessLock lock(mMutex);
    std::vector<uint32_t> receivers;
    for (const Pair& pair : GPPIPCDirectory(mSegment.GetData()).GetPairs()) {
        if (pair.process == process)
            receivers.push_back(pair.receiver);
    }
    return receivers;
}

GPPIPCState GPPIPCChannel::GetReceiverState(uint32_t process)
{
    const std::vector<uint32_t> receivers = GetReceivers(process);
    if (receivers.empty())
        return GPPIPCState::NoReceiver;
    const bool isReachable = std::any_of(receivers.cbegin(), receivers.cend(), [&](uint32_t receiver) {
        return GetQueue({process, receiver}) != nullptr;
    });
    return isReachable ? GPPIPCState::Reachable : GPPIPCState::Unreachable;
}

// The queue of a pair, whose owner runs; none when it can't be had.
std::shared_ptr<GMessageQueue> GPPIPCChannel::GetQueue(const Pair& pair)
{
    const std::lock_guard<std::mutex> guard(mOpenQueuesMutex);
    const std::pair<uint32_t, uint32_t> key(pair.process, pair.receiver);
    const auto open = mOpenQueues.find(key);
    if (open != mOpenQueues.end() && open->second->IsOwnerAlive())
        return open->second;
    if (open != mOpenQueues.end())
        mOpenQueues.erase(open);
    if (mOpenQueues.size() >= cMostOpenQueues)
        mOpenQueues.clear();
    const std::shared_ptr<GMessageQueue> queue = OpenQueue(pair);
    if (!queue || !queue->IsOwnerAlive())
        return nullptr;
    mOpenQueues[key] = queue;
    return queue;
}

// None when the system does not let it be opened, or it is another process's.
std::unique_ptr<GMessageQueue> GPPIPCChannel::OpenQueue(const Pair& pair) const
{
    try {
        std::unique_ptr<GMessageQueue> queue = GMessageQueue::Open(GetQueueName(pair));
        if (queue->IsOwnedBy(pair.process))
            return queue;
        GTrace::Error(QStringLiteral("GPPIPCChannel::OpenQueue"),
                      QStringLiteral("A message queue belongs to another process than its name says."));
    } catch (const GException& error) {
        GTrace::Debug(QStringLiteral("GPPIPCChannel::OpenQueue"), error.GetDescription());
    }
    return nullptr;
}

void GPPIPCChannel::Post(uint32_t process, GPPIPCMessage message, const GPostPolicy& policy)
{
    const std::vector<uint32_t> receivers = GetReceivers(process);
    GString failure;
    if (receivers.empty())
        failure = QStringLiteral("The process has no message receiver.");
    for (const uint32_t receiver : receivers) {
        const std::shared_ptr<GMessageQueue> queue = GetQueue({process, receiver});
        if (!queue) {
            failure = QStringLiteral("A message receiver of the process can't be reached.");
            continue;
        }
        message.receiver = receiver;
        try {
            queue->Post(message.Encode(), policy);
        } catch (const GException& error) {
            failure = error.GetDescription();
        }
    }
    if (!failure.isEmpty())
        throw GCustomException(GErrorCode::cPostMessage, failure);
}

std::unique_ptr<GMessageQueue> GPPIPCChannel::Register(uint32_t receiver)
{
    const GInterProcessLock lock(mMutex);
    GPPIPCDirectory directory(mSegment.GetData());
    RemoveDeadPairs(&directory);
    const Pair pair{GProcessInfo::GetOwnProcessID(), receiver};
    if (!directory.Add(pair))
        RaiseSegmentError(QStringLiteral("The message channel \"%1\" has no room for another receiver."),
                          mName);
    try {
        return GMessageQueue::Create(GetQueueName(pair), cQueueCapacity);
    } catch (...) {
        directory.Remove(pair);
        throw;
    }
}

// Whether the process that made the pair is known to have ended. A queue that can't be opened says nothing:
// this process may be short of something.
bool GPPIPCChannel::IsGone(const Pair& pair) const
{
    if (!GProcessInfo::IsAlive(pair.process))
        return true;
    const std::unique_ptr<GMessageQueue> queue = OpenQueue(pair);
    return queue && !queue->IsOwnerAlive();
}

void GPPIPCChannel::RemoveDeadPairs(GPPIPCDirectory* directory) const
{
    for (const Pair& pair : directory->GetPairs()) {
        if (!IsGone(pair))
            continue;
        GMessageQueue::Remove(GetQueueName(pair));
        directory->Remove(pair);
    }
}

void GPPIPCChannel::Deregister(uint32_t receiver)
{
    const GInterProcessLock lock(mMutex);
    const Pair pair{GProcessInfo::GetOwnProcessID(), receiver};
    GMessageQueue::Remove(GetQueueName(pair));
    GPPIPCDirectory(mSegment.GetData()).Remove(pair);
}
