#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/GPrefWriter.h"

#include <cstdlib>

// Reads a value's text as a dictionary and as a list; what was read, written and read again is the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GString text = GString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));

    GDictBufferReader<GString, GString> reader;
    GDict<GString, GString> dict;
    static_cast<void>(reader.ReadText(text, dict));
    GDictBufferReader<GBuffer, GString> bufferReader;
    GDict<GBuffer, GString> bufferDict;
    static_cast<void>(bufferReader.ReadText(text, bufferDict));

    QStringList list;
    static_cast<void>(GListReader::ReadText(text, list));
    GString written;
    GPrefWriter::AppendList(written, list);
    QStringList again;
    static_cast<void>(GListReader::ReadText(written, again));
    GString writtenAgain;
    GPrefWriter::AppendList(writtenAgain, again);
    if (again.size() != list.size() || written != writtenAgain)
        std::abort();
    return 0;
}
