#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GMemoryOutputStream.h"
#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefWriter.h"
#include "foundation/prefs/GText2BinStream.h"

#include <cstdlib>

namespace
{
GPrefGroups ReadGroups(const GBuffer& bytes, const GEncodingRef& encoding)
{
    GMemoryInputStream source(bytes);
    GDictListReader<GBuffer, GBuffer, GString> reader;
    GPrefGroups groups;
    static_cast<void>(reader.Read(source, encoding, groups));
    return groups;
}

void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

// Each group of one is a group of the other or has no entries.
void RequireSame(const GPrefGroups& groups, const GPrefGroups& others)
{
    for (const auto& group : groups) {
        const GPrefGroup* other = others.Find(group.key);
        Require(other != nullptr || group.value.IsEmpty());
        for (const auto& entry : group.value) {
            const GString* value = other->Find(entry.key);
            Require(value != nullptr && *value == entry.value);
        }
    }
}
}  // namespace

// Reads a document in the encoding that the first byte selects; what was read, written and read again is the
// same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const GEncodingRef encodings[] = {nullptr, GEncoding::GetUTF16(), GEncoding::GetUTF8(),
                                             GEncoding::GetWinAnsi()};
    if (size == 0)
        return 0;
    const GBuffer bytes(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    const GPrefGroups read = ReadGroups(bytes, encodings[data[0] % 4]);

    GMemoryOutputStream written;
    GText2BinStream stream(written, GEncoding::GetUTF16());
    GPrefWriter::WriteDocument(stream, read);
    const GPrefGroups again = ReadGroups(written.GetData(), nullptr);

    GMemoryOutputStream writtenAgain;
    GText2BinStream secondStream(writtenAgain, GEncoding::GetUTF16());
    GPrefWriter::WriteDocument(secondStream, again);
    RequireSame(again, ReadGroups(writtenAgain.GetData(), nullptr));
    return 0;
}
