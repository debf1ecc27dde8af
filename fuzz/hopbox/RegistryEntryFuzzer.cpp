#include "hopbox/HopboxRegistryEntry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// A record of the registry. What was read comes back from what is written of it; line breaks become CR LF
// once and then stay, and paths are tidied once.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GString text = GString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    HopboxRecord record;
    if (!record.FromText(text))
        return 0;
    HopboxRecord settled;
    HopboxRecord again;
    if (!settled.FromText(record.ToText()) || settled.ToText() != record.ToText() ||
        !again.FromText(settled.ToText()) || again.entry != settled.entry ||
        again.actorName != settled.actorName)
        abort();
    return 0;
}
