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
    Unreachable = 1,  // one is registered, but the process has ended, or its queue can't be opened
    Reachable = 2
};

// What is known about one receiver, or about what is left of it.
struct GPPIPCReceiverInfo
{
    uint32_t process = 0;
    uint32_t receiver = 0;
    bool isAlive = false;  // the process that made it runs
    bool isKept = false;   // it is dead, and the messages in its queue wait for its keeper
    size_t fill = 0;       // bytes in the queue
    size_t capacity = 0;   // 0 if the queue can't be opened
    GPPIPCAddresses addresses;
};

// One channel of the Printer Processor in one place: the directory of receivers, and the access to their
// queues. Its names may be removed and made again at any time. Any thread.
//
// Every operation raises GErrorCode::cSegmentHeader when the directory can't be opened or is damaged, and
// GErrorCode::cLockSemaphore when a running process does not release its lock.
class GPPIPCChannel
{
public:
    // The channel with this name. Makes and opens nothing.
    explicit GPPIPCChannel(const GString& name) : mName(name), mDirectory(name) {}

    const GString& GetName() const { return mName; }

    // The receivers of a process; none when there is no channel with the name.
    std::vector<uint32_t> GetReceivers(uint32_t process);

    // Receivers that take nothing for the address do not count. If the process is not reachable, `reason`
    // becomes a failure with a reason and a code.
    GPPIPCState GetReceiverState(uint32_t process, const GString& address, GResult* reason);

    // Posts the message, with the receiver's identifier filled in, to one receiver; false when that receiver
    // takes nothing for the address. Raises with GErrorCode::cPostMessage when the receiver did not get the
    // message: a GQueueIsPast when the caller should look into the directory again.
    [[nodiscard]] bool Post(uint32_t process, uint32_t receiver, const GString& address,
                            GPPIPCMessage message, const GPostPolicy& policy);

    // Every receiver that is listed or has left a queue; none when there is no channel with the name.
    std::vector<GPPIPCReceiverInfo> Look();

    // How many names Clean would remove that belong to no receiver of Look: locks and semaphores without a
    // queue.
    size_t CountStrayNames();

    // Removes what dead processes left, and the locks and semaphores without a queue. Messages for a keeper
    // are removed only with `withMessages`. Gives the number of receivers and names that were removed.
    size_t Clean(bool withMessages);

    // Whether a dead process with the same number as this one left messages for its keeper under the
    // receiver's name: the receiver can't be registered then. Raises GErrorCode::cSegmentHeader if a queue
    // can't be opened now.
    bool HoldsMessagesOf(uint32_t receiver) const;

    // Adds a receiver of this process to the directory and makes its queue, with its keeper's number and
    // addresses. Removes what dead processes left, except queues that hold messages for a keeper or can't be
    // opened now. If the directory is missing or damaged, a new one is made, with the receivers whose queues
    // are there. Raises with GErrorCode::cSegmentHeader also when the directory is full of living receivers,
    // and as HoldsMessagesOf does.
    std::unique_ptr<GMessageQueue> Register(uint32_t receiver, uint64_t keeper,
                                            const GPPIPCAddresses& addresses = {});

    // Adds a receiver of this process, whose queue exists, to the directory again.
    void EnterAgain(uint32_t receiver);

    bool IsRegistered(uint32_t receiver);

    // Removes a receiver of this process from the directory, with its queue, which the receiver has closed.
    // Messages for a keeper in the queue stay.
    void Deregister(uint32_t receiver, const GMessageQueue& queue);

    // Calls `take` with every queue that a dead process with this keeper's number left. The queues are closed
    // before, and those that are empty afterwards are removed. An exception from `take` ends the operation. A
    // queue that can't be opened now is skipped, and its error is raised after the others.
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
