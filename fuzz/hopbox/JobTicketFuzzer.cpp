#include "hopbox/HopboxJobTicket.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// A ticket as it arrives: bytes that claim to be UTF-8. What was read comes back from what is written of it,
// and damage changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GString text = GString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    HopboxJobTicket ticket;
    if (!ticket.FromText(text)) {
        if (ticket.ToText() != HopboxJobTicket().ToText())
            abort();
        return 0;
    }
    HopboxJobTicket again;
    if (!again.FromText(ticket.ToText()) || again.ToText() != ticket.ToText() ||
        again.IsValid() != ticket.IsValid())
        abort();
    return 0;
}
