#include "foundation/strings/GStringFileReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Every text that comes out lies within the file: no entry is longer than what could have made it. An escaped
// line break, two bytes, is the densest form of text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GBuffer content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    int total = 0;
    GStringFileReader::Parse(content, QStringLiteral("fuzz"),
                             [&total](uint32_t, const GString& text) { total += text.size(); });
    if (total > content.size())
        std::abort();
    return 0;
}
