#include "hosts/scribus/sla/FontHeader.h"

#include <QBuffer>

#include <cstdlib>

// Whatever the bytes are, the header is read in their bounds and says something; no right is read into a file
// that is no font.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QBuffer file;
    file.setData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    const FontHeader header = FontHeader::Parse(file);
    const bool isUnknown = header.kind == QLatin1String("unknown");
    if (header.kind.isEmpty() || header.embedding.isEmpty() ||
        (isUnknown && header.embedding != QLatin1String("not stated")))
        std::abort();
    return 0;
}
