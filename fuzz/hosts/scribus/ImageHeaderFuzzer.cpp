#include "hosts/scribus/sla/ImageHeader.h"

#include <cstdlib>

// Whatever the bytes are, the header is read in their bounds, and tells sizes that an image may have.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const ImageHeader header = ImageHeader::Parse(bytes);
    const auto isSide = [](int side) { return side >= 0 && side <= 1000000; };
    if (!isSide(header.width) || !isSide(header.height) || header.GetColorsText().isEmpty())
        std::abort();
    return 0;
}
