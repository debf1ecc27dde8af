#pragma once

#include "foundation/core/GResult.h"
#include "foundation/core/GString.h"
#include "foundation/ipc/GMessageQueue.h"
#include "foundation/ipc/GPPIPCAddresses.h"
#include "foundation/ipc/GPPIPCDirectoryFile.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

struct GPPIPCMessage;

// Whether a process can be sent messages.
enum class GPPIPCState
{
    NoReceiver = 0,   // no receiver of the process is registered
    Unreachable = 1,  // one is, but the process has ended, or its queue can't be opened
    Reachable = 2
};

// What is known of one receiver, or of what is left of one.
struct GPPIPCReceiverInfo
{
    uint32_t process = 0;
    uint32_t receiver = 0;
    bool isAlive = false;  // the process that made it runs
    bool isKept = false;   // what is in the queue of a dead one waits for its keeper
    size_t fill = 0;       // bytes in the queue
    size_t capacity = 0;   // 0 where the queue can't be opened
    GPPIPCAddresses addresses;
};

// One channel of the Printer Processor in one place: the directory of receivers, and the ways to their
// queues. Its names may be taken away and made anew at any time. Any thread.
//
// Every operation raises GErrorCode::cSegmentHeader when the directory can't be opened or is damaged, and
// GErrorCode::cLockSemaphore when somebody who runs does not let go of its lock.
class GPPIPCChannel
{
public:
    // The channel of a name. Makes and opens nothing.
    explicit GPPIPCChannel(const GString& name) : mName(name), mDirectory(name) {}

    const GString& GetName() const { return mName; }

    // The receivers of a process; none when there is no channel of the name.
    std::vector<uint32_t> GetReceivers(uint32_t process);

    // Receivers that take nothing for the address count as none. `reason` fails, with a reason and a code,
    // where the process is not reachable.
    GPPIPCState GetReceiverState(uint32_t process, const GString& address, GResult* reason);

    // Posts the message, with the receiver's identifier filled in, to one receiver; false when that takes
    // nothing for the address. Raises with GErrorCode::cPostMessage when it did not get it: a GQueueIsPast
    // when it is worth a new look at the directory.
    [[nodiscard]] bool Post(uint32_t process, uint32_t receiver, const GString& address,
                            GPPIPCMessage message, const GPostPolicy& policy);

    // Every receiver that is listed or has left a queue; none when there is no channel of the name.
    std::vector<GPPIPCReceiverInfo> Look();

    // How many names Clean would remove that belong to no receiver of Look: locks and semaphores without a
    // queue.
    size_t CountStrayNames();

    // Removes what dead processes left, with the locks and semaphores that have no queue; messages for a
    // keeper only when told so. Gives the number of receivers and names that went.
    size_t Clean(bool withMessages);

    // Whether a dead process of this one's number left messages for its keeper under the receiver's name: it
    // can't be registered then. Raises GErrorCode::cSegmentHeader for a queue that can't be opened just now.
    bool HoldsMessagesOf(uint32_t receiver) const;

    // Enters a receiver of this process and makes its queue, with its keeper's number and addresses. Removes
    // what dead processes left, but for queues that hold messages for a keeper, or can't be opened just now.
    // A missing or damaged directory is made anew, with the receivers whose queues are there. Raises with
    // GErrorCode::cSegmentHeader, too, when the directory is full of receivers that live, and as
    // HoldsMessagesOf does.
    std::unique_ptr<GMessageQueue> Register(uint32_t receiver, uint64_t keeper,
                                            const GPPIPCAddresses& addresses = {});

    // Enters a receiver of this process, whose queue is there, once more.
    void EnterAgain(uint32_t receiver);

    bool IsRegistered(uint32_t receiver);

    // Takes a receiver of this process out again, with its queue, which it has closed. What the queue still
    // holds for a keeper stays.
    void Deregister(uint32_t receiver, const GMessageQueue& queue);

    // Hands every queue that a dead process with this keeper's number left to `take`, closed, and removes
    // those that are empty then. What `take` raises ends it. A queue that can't be opened just now is passed
    // over, and its error raised after the others.
    void TakeOver(uint64_t keeper, const std::function<void(GMessageQueue& queue)>& take);

private:
    using Pair = GPPIPCDirectory::Pair;
    enum class Removal
    {
        KeepMessages,
        All
    };

    GPPIPCReceiverInfo Describe(const Pair& pair) const;
    std::set<GString> ListStrayNames() const;
    GString GetQueueName(const Pair& pair) const;
    std::shared_ptr<GMessageQueue> GetQueue(const Pair& pair);
    using Opening = std::unique_ptr<GMessageQueue> (&)(const GString& name);
    std::unique_ptr<GMessageQueue> OpenQueue(const Pair& pair, Opening open = GMessageQueue::Open) const;
    std::unique_ptr<GMessageQueue> TryToOpenQueue(const Pair& pair) const;
    std::unique_ptr<GMessageQueue> OpenUsable(const Pair& pair) const;
    bool IsGone(const Pair& pair) const;
    std::vector<Pair> ListQueues() const;  // that have a name; none on Windows
    void AddUnlisted(GPPIPCDirectory* directory) const;
    void RemoveDeadPairs(GPPIPCDirectory* directory, Removal removal) const;
    void RemovePair(GPPIPCDirectory* directory, const Pair& pair) const;

    const GString mName;
    GPPIPCDirectoryFile mDirectory;

    // Queues that were posted to, kept open for the next message.
    std::mutex mOpenQueuesMutex;
    std::map<std::pair<uint32_t, uint32_t>, std::shared_ptr<GMessageQueue>> mOpenQueues;
};
