#include "foundation/ipc/GPPIPCChannel.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/trace/GTrace.h"

#include <QVector>

#include <algorithm>
#include <exception>

namespace
{
constexpr size_t cQueueCapacity = 262144;
constexpr size_t cMostOpenQueues = 16;

[[noreturn]] void RaisePastQueue(const GString& text)
{
    throw GQueueIsPast(GErrorCode::cPostMessage, text);
}
}  // namespace

GString GPPIPCChannel::GetQueueName(const Pair& pair) const
{
    return QStringLiteral("%1_%2_%3")
        .arg(mName, QString::number(pair.process), QString::number(pair.receiver));
}

std::vector<uint32_t> GPPIPCChannel::GetReceivers(uint32_t process)
{
    std::vector<uint32_t> receivers;
    const std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.TryToEnter();
    if (!access)
        return receivers;
    for (const Pair& pair : access->Get().GetPairs()) {
        if (pair.process == process)
            receivers.push_back(pair.receiver);
    }
    return receivers;
}

GPPIPCState GPPIPCChannel::GetReceiverState(uint32_t process, const GString& address, GResult* reason)
{
    const std::vector<uint32_t> receivers = GetReceivers(process);
    GPPIPCState state = GPPIPCState::NoReceiver;
    *reason =
        GResult::Failure(QStringLiteral("The process has no message receiver."), GErrorCode::cPostMessage);
    for (const uint32_t receiver : receivers) {
        try {
            const GPPIPCAddresses addresses(GetQueue({process, receiver})->GetOwner().notice);
            *reason =
                addresses.Accepts(address)
                    ? GResult::Success()
                    : GResult::Failure(
                          QStringLiteral("The process takes messages for %1 only.").arg(addresses.GetText()),
                          GErrorCode::cPostMessage);
            if (reason->HasSucceeded())
                return GPPIPCState::Reachable;
        } catch (const GException& error) {
            *reason = GResult::Failure(error.GetDescription(), error.GetCode());
            state = GPPIPCState::Unreachable;
        }
    }
    return state;
}

// The queue of a pair, whose owner runs.
std::shared_ptr<GMessageQueue> GPPIPCChannel::GetQueue(const Pair& pair)
{
    const std::lock_guard<std::mutex> guard(mOpenQueuesMutex);
    const std::pair<uint32_t, uint32_t> key(pair.process, pair.receiver);
    const auto open = mOpenQueues.find(key);
    if (open != mOpenQueues.end() && open->second->IsOwnerAlive() && open->second->IsCurrent())
        return open->second;
    if (open != mOpenQueues.end())
        mOpenQueues.erase(open);
    if (mOpenQueues.size() >= cMostOpenQueues)
        mOpenQueues.clear();
    const std::shared_ptr<GMessageQueue> queue = OpenQueue(pair);
    if (!queue->IsOwnerAlive())
        RaisePastQueue(QStringLiteral("The process of the message receiver has ended."));
    mOpenQueues[key] = queue;
    return queue;
}

std::unique_ptr<GMessageQueue> GPPIPCChannel::OpenQueue(const Pair& pair, Opening open) const
{
    std::unique_ptr<GMessageQueue> queue = open(GetQueueName(pair));
    if (queue->GetOwner().processID != pair.process)
        RaiseSegmentDamage(
            QStringLiteral("The message queue \"%1\" belongs to another process than its name says."),
            GetQueueName(pair));
    return queue;
}

// The queue of a pair; null for one that is gone or damaged, so that nobody can use it ever again, with a
// line in the log. Raises when it can't be opened just now, as this process may be short of something: what
// it holds is not known.
std::unique_ptr<GMessageQueue> GPPIPCChannel::OpenUsable(const Pair& pair) const
{
    try {
        return OpenQueue(pair, GMessageQueue::OpenLeft);
    } catch (const GDamagedObject& error) {
        GTrace::Error(QStringLiteral("GPPIPCChannel::OpenUsable"), error.GetDescription());
        return nullptr;
    } catch (const GException&) {
        if (!GSharedSegment::IsThere(GetQueueName(pair)))
            return nullptr;
        throw;
    }
}

std::unique_ptr<GMessageQueue> GPPIPCChannel::TryToOpenQueue(const Pair& pair) const
{
    try {
        return OpenQueue(pair);
    } catch (const GException& error) {
        GTrace::Debug(QStringLiteral("GPPIPCChannel::TryToOpenQueue"), error.GetDescription());
        return nullptr;
    }
}

bool GPPIPCChannel::Post(uint32_t process, uint32_t receiver, const GString& address, GPPIPCMessage message,
                         const GPostPolicy& policy)
{
    std::shared_ptr<GMessageQueue> queue;
    try {
        queue = GetQueue({process, receiver});
    } catch (const GException& error) {
        RaisePastQueue(error.GetDescription());
    }
    if (!GPPIPCAddresses(queue->GetOwner().notice).Accepts(address))
        return false;
    message.receiver = receiver;
    try {
        queue->Post(message.Encode(), policy);
        return true;
    } catch (const GQueueIsPast&) {
        const std::lock_guard<std::mutex> guard(mOpenQueuesMutex);
        mOpenQueues.erase({process, receiver});
        throw;
    }
}

bool GPPIPCChannel::HoldsMessagesOf(uint32_t receiver) const
{
    const Pair pair{GProcessInfo::GetOwnProcessID(), receiver};
    if (!GSharedSegment::IsThere(GetQueueName(pair)))
        return false;
    const std::unique_ptr<GMessageQueue> queue = OpenUsable(pair);
    return queue && !queue->IsOwnerAlive() && queue->GetOwner().keeper != 0 && !queue->IsEmpty();
}

std::unique_ptr<GMessageQueue> GPPIPCChannel::Register(uint32_t receiver, uint64_t keeper,
                                                       const GPPIPCAddresses& addresses)
{
    std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.Enter();
    GPPIPCDirectory& directory = access->Get();
    AddUnlisted(&directory);
    RemoveDeadPairs(&directory, Removal::KeepMessages);
    const Pair pair{GProcessInfo::GetOwnProcessID(), receiver};
    if (HoldsMessagesOf(receiver))
        RaiseSegmentError(
            QStringLiteral("The message channel \"%1\" holds messages under the receiver's name."), mName);
    if (!directory.Add(pair)) {
        // Who lives needs the room more than who may come back.
        RemoveDeadPairs(&directory, Removal::All);
        if (!directory.Add(pair))
            RaiseSegmentError(QStringLiteral("The message channel \"%1\" has no room for another receiver."),
                              mName);
    }
    try {
        return GMessageQueue::Create(GetQueueName(pair), cQueueCapacity, keeper, addresses.Encode());
    } catch (...) {
        directory.Remove(pair);
        mDirectory.Leave(std::move(access));
        throw;
    }
}

// Whether the process that made the pair is known to have ended. A queue that can't be opened says nothing,
// as this process may be short of something; one that is not there does: a living receiver would make it anew
// and enter again.
bool GPPIPCChannel::IsGone(const Pair& pair) const
{
    if (!GProcessInfo::IsAlive(pair.process))
        return true;
    const std::unique_ptr<GMessageQueue> queue = TryToOpenQueue(pair);
    return queue ? !queue->IsOwnerAlive() : !GSharedSegment::IsThere(GetQueueName(pair));
}

// Queues are found without the directory, too, where the system lists them: whoever empties or removes it
// makes nobody lose his messages.
void GPPIPCChannel::AddUnlisted(GPPIPCDirectory* directory) const
{
    const std::vector<Pair> pairs = directory->GetPairs();
    for (const Pair& pair : ListQueues()) {
        if (std::find(pairs.cbegin(), pairs.cend(), pair) == pairs.cend())
            static_cast<void>(directory->Add(pair));  // a full one takes no more
    }
}

std::vector<GPPIPCChannel::Pair> GPPIPCChannel::ListQueues() const
{
    std::vector<Pair> pairs;
    for (const GString& rest : GSharedSegment::ListRests(mName + QLatin1Char('_'))) {
        const QVector<QStringRef> numbers = rest.splitRef(QLatin1Char('_'));
        const Pair pair{numbers.first().toUInt(), numbers.last().toUInt()};
        if (numbers.size() == 2 && pair.process != 0 && pair.receiver != 0)
            pairs.push_back(pair);
    }
    return pairs;
}

void GPPIPCChannel::RemoveDeadPairs(GPPIPCDirectory* directory, Removal removal) const
{
    for (const Pair& pair : directory->GetPairs()) {
        if (!IsGone(pair))
            continue;
        std::unique_ptr<GMessageQueue> queue;
        try {
            queue = OpenUsable(pair);
        } catch (const GException& error) {
            GTrace::Error(QStringLiteral("GPPIPCChannel::RemoveDeadPairs"), error.GetDescription());
            continue;  // it may hold messages for a keeper
        }
        // Closed first: who is still posting is told that it failed.
        if (queue)
            queue->Close();
        const bool isKept = queue && queue->GetOwner().keeper != 0 && !queue->IsEmpty();
        if (!isKept)
            RemovePair(directory, pair);
        else if (removal == Removal::All) {
            GTrace::Error(QStringLiteral("GPPIPCChannel::RemoveDeadPairs"),
                          QStringLiteral("Messages that process %1 left are dropped.").arg(pair.process));
            RemovePair(directory, pair);
        }
    }
}

void GPPIPCChannel::RemovePair(GPPIPCDirectory* directory, const Pair& pair) const
{
    GMessageQueue::Remove(GetQueueName(pair));
    directory->Remove(pair);
}

void GPPIPCChannel::EnterAgain(uint32_t receiver)
{
    const std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.Enter();
    AddUnlisted(&access->Get());
    if (!access->Get().Add({GProcessInfo::GetOwnProcessID(), receiver}))
        RaiseSegmentError(QStringLiteral("The message channel \"%1\" has no room for another receiver."),
                          mName);
}

bool GPPIPCChannel::IsRegistered(uint32_t receiver)
{
    const std::vector<uint32_t> receivers = GetReceivers(GProcessInfo::GetOwnProcessID());
    return std::find(receivers.cbegin(), receivers.cend(), receiver) != receivers.cend();
}

void GPPIPCChannel::Deregister(uint32_t receiver, const GMessageQueue& queue)
{
    std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.TryToEnter();
    const bool isKept = queue.IsIntact() && queue.GetOwner().keeper != 0 && !queue.IsEmpty();
    if (!access || !queue.IsCurrent() || isKept)
        return;
    RemovePair(&access->Get(), {GProcessInfo::GetOwnProcessID(), receiver});
    mDirectory.Leave(std::move(access));
}

void GPPIPCChannel::TakeOver(uint64_t keeper, const std::function<void(GMessageQueue& queue)>& take)
{
    std::vector<Pair> pairs;
    {
        std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.Enter();
        AddUnlisted(&access->Get());
        pairs = access->Get().GetPairs();
        mDirectory.Leave(std::move(access));
    }
    std::exception_ptr failure;
    for (const Pair& pair : pairs) {
        std::unique_ptr<GMessageQueue> queue;
        try {
            queue = OpenUsable(pair);
        } catch (const GException&) {
            failure = std::current_exception();
        }
        if (!queue || queue->GetOwner().keeper != keeper || queue->IsOwnerAlive())
            continue;
        queue->Close();
        take(*queue);
        std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.Enter();
        if (queue->IsEmpty() && queue->IsCurrent())
            RemovePair(&access->Get(), pair);
        mDirectory.Leave(std::move(access));
    }
    if (failure)
        std::rethrow_exception(failure);
}

GPPIPCReceiverInfo GPPIPCChannel::Describe(const Pair& pair) const
{
    GPPIPCReceiverInfo info;
    info.process = pair.process;
    info.receiver = pair.receiver;
    info.isAlive = !IsGone(pair);
    if (const std::unique_ptr<GMessageQueue> queue = TryToOpenQueue(pair)) {
        info.isKept = !info.isAlive && queue->GetOwner().keeper != 0 && !queue->IsEmpty();
        info.fill = queue->GetFill();
        info.capacity = queue->GetCapacity();
        info.addresses = GPPIPCAddresses(queue->GetOwner().notice);
    }
    return info;
}

std::vector<GPPIPCReceiverInfo> GPPIPCChannel::Look()
{
    std::vector<GPPIPCReceiverInfo> infos;
    const std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.TryToEnter();
    std::vector<Pair> pairs = access ? access->Get().GetPairs() : std::vector<Pair>();
    for (const Pair& pair : ListQueues()) {
        if (std::find(pairs.cbegin(), pairs.cend(), pair) == pairs.cend())
            pairs.push_back(pair);
    }
    for (const Pair& pair : pairs)
        infos.push_back(Describe(pair));
    return infos;
}

// Locks and semaphores without a queue; the names of these queues. Nobody makes a queue meanwhile: that is
// done under the directory's lock.
std::set<GString> GPPIPCChannel::ListStrayNames() const
{
    std::set<GString> names;
    for (const GString& rest : GSharedSegment::ListRests(mName + QLatin1Char('_'))) {
        const bool isPart = rest.endsWith(QLatin1String("_L")) || rest.endsWith(QLatin1String("_S"));
        const GString queue = mName + QLatin1Char('_') + rest.chopped(isPart ? 2 : 0);
        if (isPart && !GSharedSegment::IsThere(queue))
            names.insert(queue);
    }
    return names;
}

size_t GPPIPCChannel::CountStrayNames()
{
    const std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.TryToEnter();
    return ListStrayNames().size();
}

size_t GPPIPCChannel::Clean(bool withMessages)
{
    if (!mDirectory.TryToEnter() && GSharedSegment::ListRests(mName + QLatin1Char('_')).empty())
        return 0;
    std::unique_ptr<GPPIPCDirectoryFile::Access> access = mDirectory.Enter();
    AddUnlisted(&access->Get());
    const size_t before = access->Get().GetPairs().size();
    RemoveDeadPairs(&access->Get(), withMessages ? Removal::All : Removal::KeepMessages);
    const std::set<GString> strayNames = ListStrayNames();
    for (const GString& queue : strayNames)
        GMessageQueue::Remove(queue);
    const size_t removed = before - access->Get().GetPairs().size() + strayNames.size();
    mDirectory.Leave(std::move(access));
    return removed;
}
