#include "hopbox/HopboxRegistryEntry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// A record of the registry. What was read comes back from what is written of it; line breaks become CR LF
// once and then stay, and paths are tidied once. What a list of Hopboxes shows is read of the same texts.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GString text = GString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));
    HopboxRecord record;
    HopboxOffer offer;
    const bool isRead = record.FromText(text);
    if (offer.FromText(text) != isRead || offer.isPlugin != record.entry.isPlugin ||
        offer.pdfSettings != record.entry.pdfSettings)
        abort();
    if (!isRead)
        return 0;
    HopboxRecord settled;
    HopboxRecord again;
    if (!settled.FromText(record.ToText()) || settled.ToText() != record.ToText() ||
        !again.FromText(settled.ToText()) || again.entry != settled.entry ||
        again.actorName != settled.actorName)
        abort();
    return 0;
}
