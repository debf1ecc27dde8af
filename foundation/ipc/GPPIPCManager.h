#pragma once

#include "foundation/core/GString.h"
#include "foundation/ipc/GPPIPCChannel.h"

#include <cstdint>
#include <memory>
#include <vector>

// The special identifiers of the channels.
enum class GPPIPCChannelKind
{
    PrinterProcessor = 201,
    Second = 202
};

// The way to the message receivers of all processes: the channel of the own session and, where the system has
// one, the global channel, through which processes of other sessions are reached. One for the process and
// kind, shared by reference count. Sending needs no event loop. Any thread.
class GPPIPCManager
{
public:
    // The process's manager, made when nobody has it. Raises with GErrorCode::cSegmentHeader when the
    // session's channel can't be had; a global channel that can't is left out, with a line in the trace.
    static std::shared_ptr<GPPIPCManager> Get(GPPIPCChannelKind kind = GPPIPCChannelKind::PrinterProcessor);

    // Whether the process can be sent messages. Raises as GPPIPCChannel does.
    GPPIPCState GetReceiverState(uint32_t process);

    // Posts a message to every receiver of a process. Raises with GErrorCode::cPostMessage when one of them
    // did not get it, or there is none. Takes up to 3 s for a receiver whose queue is full.
    void Post(uint32_t process, int32_t kind, const GBuffer& payload);

    // For another patience than 3 s, before threads share the manager.
    void SetPostPolicy(const GPostPolicy& policy) { mPolicy = policy; }

private:
    friend class GPPIPCReceiver;

    explicit GPPIPCManager(GPPIPCChannelKind kind);

    GPPIPCChannel& GetChannel(uint32_t process);
    static uint32_t MakeReceiverID();

    std::unique_ptr<GPPIPCChannel> mSessionChannel;
    std::unique_ptr<GPPIPCChannel> mGlobalChannel;  // none where it has the name of the session's
    GPostPolicy mPolicy;
};
