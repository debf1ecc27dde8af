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
    reader.ReadText(text, dict);
    GDictBufferReader<GBuffer, GString> bufferReader;
    GDict<GBuffer, GString> bufferDict;
    bufferReader.ReadText(text, bufferDict);

    QStringList list;
    GListReader::ReadText(text, list);
    GString written;
    GPrefWriter::AppendList(written, list);
    QStringList again;
    GListReader::ReadText(written, again);
    GString writtenAgain;
    GPrefWriter::AppendList(writtenAgain, again);
    if (again.size() != list.size() || written != writtenAgain)
        std::abort();
    return 0;
}
