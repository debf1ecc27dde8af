#pragma once

#include "foundation/core/GString.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GMessageQueue.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
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

// One channel of the Printer Processor: the directory of receivers, and the ways to their queues. Any thread.
//
// Every operation raises GErrorCode::cSegmentHeader when the directory is damaged, and
// GErrorCode::cLockSemaphore when somebody who runs does not let go of its lock.
class GPPIPCChannel
{
public:
    // Opens the channel of a name, or makes it.
    explicit GPPIPCChannel(const GString& name);

    GPPIPCState GetReceiverState(uint32_t process);

    // Posts the message, with the receiver's identifier filled in, to every receiver of the process. Raises
    // with GErrorCode::cPostMessage when one of them did not get it, or there is none.
    void Post(uint32_t process, GPPIPCMessage message, const GPostPolicy& policy);

    // Enters a receiver of this process, makes its queue, and removes what dead processes left. Raises with
    // GErrorCode::cSegmentHeader, too, when the directory is full.
    std::unique_ptr<GMessageQueue> Register(uint32_t receiver);

    // Takes a receiver of this process out again.
    void Deregister(uint32_t receiver);

private:
    using Pair = GPPIPCDirectory::Pair;

    GString GetQueueName(const Pair& pair) const;
    std::vector<uint32_t> GetReceivers(uint32_t process);
    std::shared_ptr<GMessageQueue> GetQueue(const Pair& pair);
    std::unique_ptr<GMessageQueue> OpenQueue(const Pair& pair) const;
    bool IsGone(const Pair& pair) const;
    void RemoveDeadPairs(GPPIPCDirectory* directory) const;

    const GString mName;
    GSharedSegment mSegment;
    GInterProcessMutex mMutex;

    // Queues that were posted to, kept open for the next message.
    std::mutex mOpenQueuesMutex;
    std::map<std::pair<uint32_t, uint32_t>, std::shared_ptr<GMessageQueue>> mOpenQueues;
};
