#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/GPrefWriter.h"

#include <cstdlib>

namespace
{
using Reader = GDictBufferReader<GString, GString>;

void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

// The way that reads entry by entry where they stand gives the same as the one through a stream.
void RequireTheSameInPlace(const GString& text, const GDict<GString, GString>& dict, bool isRead)
{
    GDict<GString, GString> taken;
    const bool isTaken = Reader().ReadText(text, [&taken](const QStringRef& key, const DictValue& value) {
        taken.Insert(key.toString(), value.GetText());
    });
    if (dict.IsCrowded())
        return;  // the stream's way ends there
    Require(isTaken == isRead && taken.GetCount() == dict.GetCount());
    for (const auto& entry : dict) {
        const GString* const value = taken.Find(entry.key);
        Require(value != nullptr && *value == entry.value);
    }
}
}  // namespace

// Reads a value's text as a dictionary and as a list; what was read, written and read again is the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GString text = GString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size));

    GDict<GString, GString> dict;
    const bool isRead = Reader().ReadText(text, dict);
    RequireTheSameInPlace(text, dict, isRead);
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
    Require(again.size() == list.size() && written == writtenAgain);
    return 0;
}
