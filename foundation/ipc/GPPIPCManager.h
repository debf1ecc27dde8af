#pragma once

#include "foundation/core/GResult.h"
#include "foundation/core/GString.h"
#include "foundation/ipc/GPPIPCChannel.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

// The special identifiers of the channels.
enum class GPPIPCChannelKind
{
    PrinterProcessor = 201,
    Second = 202
};

// The way to the message receivers of all processes: the channel of the own session, in each place where it
// may be, and, where the system has one, the global channel, through which processes of other sessions are
// reached. One for the process and kind, shared by reference count. Sending needs no event loop, and makes no
// channel where there is none. Any thread.
class GPPIPCManager
{
public:
    // The process's manager, made when nobody has it.
    static std::shared_ptr<GPPIPCManager> Get(GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor);

    // Whether the process can be sent messages for an address, or for anybody where that is empty; `reason`
    // fails, with a reason and a code, where it can't. Raises as GPPIPCChannel does when the best place can't
    // be looked into and no other one has a receiver.
    GPPIPCState GetReceiverState(uint32_t process, GResult* reason = nullptr, const GString& address = {});

    // Posts a message to every receiver of a process that takes messages for the address. Raises with
    // GErrorCode::cPostMessage and a text that names the process when one of them did not get it, or there is
    // none. Takes up to 3 s for a receiver whose queue is full.
    void Post(uint32_t process, int32_t kind, const GBuffer& payload, const GString& address = {});

    // What GPPIPCChannel's operations of these names give, for all places.
    std::vector<GPPIPCReceiverInfo> Look();
    size_t CountStrayNames();
    size_t Clean(bool withMessages);

    // For another patience than 3 s, before threads share the manager.
    void SetPostPolicy(const GPostPolicy& policy) { mPolicy = policy; }

private:
    friend class GPPIPCReceiver;

    using Channels = std::vector<std::shared_ptr<GPPIPCChannel>>;

    explicit GPPIPCManager(GPPIPCChannelKind kind) : mKind(kind) {}

    // The best place comes first.
    Channels GetSessionChannels();
    std::shared_ptr<GPPIPCChannel> GetGlobalChannel();  // none where it has the name of the session's
    Channels GetAllChannels();
    Channels GetChannels(uint32_t process, bool* isGlobal);
    std::shared_ptr<GPPIPCChannel> GetChannel(const GString& prefix);
    static uint32_t MakeReceiverID();

    const GPPIPCChannelKind mKind;
    GPostPolicy mPolicy;
    std::mutex mMutex;  // over the next
    std::map<GString, std::shared_ptr<GPPIPCChannel>> mChannels;
};
