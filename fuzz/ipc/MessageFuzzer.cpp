#include "foundation/core/GException.h"
#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GPPIPCMessage.h"

#include <cstdlib>
#include <cstring>
#include <memory>

// A queue's segment as somebody else left it: it is refused, or it gives up messages and is a good queue
// again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto words = std::make_unique<uint64_t[]>(size / sizeof(uint64_t) + 1);
    uint8_t* const segment = reinterpret_cast<uint8_t*>(words.get());
    std::memcpy(segment, data, size);
    try {
        GMessageRing ring = GMessageRing::Open(segment, size);
        ring.Put("posted to the damaged one");
        bool isDamaged = false;
        for (const GMessageRing::Entry& entry : ring.Peek(size, &isDamaged)) {
            GPPIPCMessage message;
            if (GPPIPCMessage::Decode(entry.message, &message) && message.Encode() != entry.message)
                std::abort();
            ring.Forget(entry.end);
        }
        ring.Peek(1, &isDamaged);
        const GMessageRing::PutResult result = ring.Put("good");
        const size_t expected = result == GMessageRing::PutResult::DoneAsFirst ? 1 : 0;
        if (result != GMessageRing::PutResult::Closed && expected != 1)
            std::abort();
        if (ring.Peek(2, &isDamaged).size() != expected || isDamaged)
            std::abort();
    } catch (const GException&) {
    }
    return 0;
}
