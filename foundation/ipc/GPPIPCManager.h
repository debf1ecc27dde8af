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

// Gives access to the message receivers of all processes. It uses the channel of the own session, in each
// place where it may be, and also the global channel, if the system has one, to reach processes of other
// sessions. A process has one manager of each kind, shared by reference count. Sending needs no event loop,
// and never makes a channel. Any thread.
class GPPIPCManager
{
public:
    // The process's manager; it is made when nobody uses one yet.
    static std::shared_ptr<GPPIPCManager> Get(GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor);

    // Whether messages for an address can be sent to the process; an empty address means any receiver. If
    // they can't, `reason` becomes a failure with a reason and a code. Raises as GPPIPCChannel does when the
    // best place can't be read and no other place has a receiver.
    GPPIPCState GetReceiverState(uint32_t process, GResult* reason = nullptr, const GString& address = {});

    // Posts a message to every receiver of a process that takes messages for the address. Raises with
    // GErrorCode::cPostMessage and a text that names the process when one of the receivers did not get the
    // message, or when there is no receiver. Takes up to 3 s for a receiver whose queue is full.
    void Post(uint32_t process, int32_t kind, const GBuffer& payload, const GString& address = {});

    // The results of GPPIPCChannel's operations with the same names, for all places.
    std::vector<GPPIPCReceiverInfo> Look();
    size_t CountStrayNames();
    size_t Clean(bool withMessages);

    // Sets another limit than 3 s. Call it before threads share the manager.
    void SetPostPolicy(const GPostPolicy& policy) { mPolicy = policy; }

private:
    friend class GPPIPCReceiver;

    using Channels = std::vector<std::shared_ptr<GPPIPCChannel>>;

    explicit GPPIPCManager(GPPIPCChannelKind kind) : mKind(kind) {}

    // The best place comes first.
    Channels GetSessionChannels();
    std::shared_ptr<GPPIPCChannel> GetGlobalChannel();  // none if named like the session's
    Channels GetAllChannels();
    Channels GetChannels(uint32_t process, bool* isGlobal);
    std::shared_ptr<GPPIPCChannel> GetChannel(const GString& prefix);
    static uint32_t MakeReceiverID();

    const GPPIPCChannelKind mKind;
    GPostPolicy mPolicy;
    std::mutex mMutex;  // guards the next
    std::map<GString, std::shared_ptr<GPPIPCChannel>> mChannels;
};
