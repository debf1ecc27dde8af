#include "foundation/prefs/GDictBufferReader.h"

#include "foundation/core/GMemoryInputStream.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/PlainDictText.h"
#include "foundation/prefs/PrefKey.h"
#include "foundation/prefs/PrefMarkers.h"

namespace
{
// Gives what `read` gives of a stream over the text.
template <typename ReadStream>
bool ReadFromText(const GString& text, ReadStream read)
{
    const auto memory = GMemoryInputStream::CreateOnText(text);
    GBufferedInputStream buffered(*memory);
    GBin2TextStream stream(buffered, GEncoding::GetUTF16());
    return read(stream);
}
}  // namespace

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::Read(GBin2TextStream& stream, GDict<Key, Value>& dict)
{
    dict.Clear();
    return ReadBegin(stream) && ReadEntries(stream, [&](const GString& key, GString&& value) {
               dict.Insert(ConvertKey(key), std::move(value));
               return !dict.IsCrowded();
           });
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadText(const GString& text, GDict<Key, Value>& dict)
{
    return ReadFromText(text, [&](GBin2TextStream& stream) { return Read(stream, dict); });
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadText(const GString& text, const Take& take)
{
    PlainDictText plain(text);
    const bool isPlain = plain.ReadBegin();
    bool hasEntries = false;
    QStringRef key;
    GString value;
    for (; isPlain && plain.ReadEntry(key, value); hasEntries = true)
        take(key, std::move(value));
    if (isPlain && plain.IsAtEnd())
        return true;
    return ReadFromText(hasEntries ? plain.GetRest() : text, [&](GBin2TextStream& stream) {
        return (hasEntries || ReadBegin(stream)) &&
               ReadEntries(stream, [&](const GString& keyText, GString&& valueText) {
                   take(QStringRef(&keyText), std::move(valueText));
                   return true;
               });
    });
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadBegin(GBin2TextStream& stream)
{
    stream.SkipWhitespace(true);
    mStopPosition = stream.GetPosition();
    GString token;
    if (!stream.ReadString(token) || !IsBeginMarker(token))
        return false;
    stream.SkipWhitespace(true);
    return true;
}

// Ends, as damage, with an entry that `takeEntry` refuses.
template <typename Key, typename Value>
template <typename TakeEntry>
bool GDictBufferReader<Key, Value>::ReadEntries(GBin2TextStream& stream, TakeEntry takeEntry)
{
    GString keyText;
    keyText.reserve(64);  // most keys fit; the memory serves all of them
    for (;;) {
        stream.SkipWhitespace(false);
        mStopPosition = stream.GetPosition();
        if (!stream.ReadQuotedString(keyText))
            return ReadEnd(stream);
        stream.SkipWhitespace(false);
        GString value;
        if (!stream.ReadQuotedString(value))
            return false;
        stream.SkipLine();
        if (!takeEntry(keyText, std::move(value)))
            return false;
    }
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadEnd(GBin2TextStream& stream) const
{
    GString token;
    const bool isEnd = stream.ReadString(token) && (IsEndMarker(token) || token.startsWith(QLatin1Char('#')));
    if (isEnd)
        stream.SkipLine();
    return isEnd;
}

template <typename Key, typename Value>
Key GDictBufferReader<Key, Value>::ConvertKey(const GString& text) const
{
    return PrefKey::FromText<Key>(text);
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::IsBeginMarker(const GString& token) const
{
    return token == PrefMarkers::cBeginDict;
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::IsEndMarker(const GString& token) const
{
    return token == PrefMarkers::cEndDict;
}

template class GDictBufferReader<GBuffer, GString>;
template class GDictBufferReader<GString, GString>;
