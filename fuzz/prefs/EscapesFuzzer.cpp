#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/DictValue.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/strings/GStringFileReader.h"

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

GString ReadInPlace(const GString& text)
{
    return DictValue(QStringRef(&text), true).GetText();
}

// Every reader of quoted texts takes the same escapes back, and so does that of typed ones, but for two leads
// of its own.
void CompareReaders(const GString& text, const GString& quoted, const GString& once)
{
    Require(ReadInPlace(quoted.mid(1, quoted.size() - 2)) == once);
    bool isTaken = false;
    GStringFileReader::Parse("1 " + quoted.toUtf8(), QStringLiteral("fuzz"),
                             [&](uint32_t, const GString& taken) { isTaken = taken == once; });
    Require(isTaken);
    GString typed = text;
    GStringSupport::SetSpecialCharacters(typed);
    Require(text.contains(QChar(0x80)) || text.contains(QChar(0xA5)) || typed == ReadInPlace(text));
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
    Require(ReadQuoted(QLatin1Char('"') + text, bufferSize, damaged) || damaged == ReadInPlace(text));
    GString quoted = text;
    GStringSupport::QuoteString(quoted);
    GString once;
    Require(ReadQuoted(quoted, bufferSize, once));
    CompareReaders(text, quoted, once);
    GStringSupport::QuoteString(once);
    Require(once == quoted);

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
