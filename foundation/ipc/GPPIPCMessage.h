#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// One message of the Printer Processor channel. Its bytes are described in docs/formats/channel.md.
struct GPPIPCMessage
{
    static constexpr uint32_t cThroughGlobalChannel = 1;

    uint32_t session = 0;   // of the sender
    uint32_t process = 0;   // of the sender
    uint32_t receiver = 0;  // the one that it was posted to
    int32_t kind = 0;
    uint32_t flag = 0;
    GBuffer payload;

    // Where the message was taken out: the number of the queue, and the place in it. Not part of the
    // message's bytes.
    uint64_t queue = 0;
    uint64_t position = 0;
    bool isLeft = false;  // in the queue of a dead process

    GBuffer Encode() const;

    // False, with `message` unchanged, for bytes that are not a message.
    [[nodiscard]] static bool Decode(const GBuffer& bytes, GPPIPCMessage* message);
};
