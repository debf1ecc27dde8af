#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GBin2TextStream.h"

#include <cstdlib>

namespace
{
void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

bool ReadQuoted(const GString& source, int bufferSize, GString& text)
{
    const auto memory = GMemoryInputStream::CreateOnText(source);
    GBufferedInputStream buffered(*memory, bufferSize);
    GBin2TextStream stream(buffered, GEncoding::GetUTF16());
    return stream.ReadQuotedString(text);
}
}  // namespace

// Escapes and takes escapes back, in text and bytes, with a buffer of the size that the first byte gives.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const GBuffer bytes(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    const GString text = GString::fromUtf8(bytes);
    const int bufferSize = data[0] + 1;

    GString damaged;
    ReadQuoted(QLatin1Char('"') + text, bufferSize, damaged);
    GString quoted = text;
    GStringSupport::QuoteString(quoted);
    GString once;
    Require(ReadQuoted(quoted, bufferSize, once));
    GStringSupport::QuoteString(once);
    Require(once == quoted);

    GString typed = text;
    GStringSupport::SetSpecialCharacters(typed);
    GBuffer typedBytes = bytes;
    GBufferSupport::ASCIIReplaceEscapeCodes(typedBytes);
    GBuffer escapedBytes = bytes;
    GBufferSupport::ASCIIReplaceSpecialChars(escapedBytes);
    Require(escapedBytes.size() <= 2 * bytes.size());

    Require(GStringSupport::DeScramble(GStringSupport::Scramble(text)) == text);
    GStringSupport::DeScramble(text);
    Require(GBufferSupport::GetNameFromText(GBufferSupport::GetNameText(bytes)) == bytes);
    return 0;
}
