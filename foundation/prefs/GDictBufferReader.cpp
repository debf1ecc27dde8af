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
    mDamagePosition = -1;
    mHasEndedDocument = false;
    const bool isRead =
        ReadBegin(stream) && ReadEntries(stream, [&](const GString& keyText, GString&& value) {
            Key key = ConvertKey(keyText);
            if (PrefKey::IsLossy(keyText, key))
                NoteDamage();
            dict.Insert(std::move(key), std::move(value));
            return !dict.IsCrowded();
        });
    if (!isRead)
        NoteDamage();
    return isRead;
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadText(const GString& text, GDict<Key, Value>& dict)
{
    return ReadFromText(text, [&](GBin2TextStream& stream) { return Read(stream, dict); });
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadText(const GString& text, const Sink& take)
{
    PlainDictText plain(text);
    const bool isPlain = plain.ReadBegin();
    bool hasEntries = false;
    QStringRef key;
    DictValue value;
    for (; isPlain && plain.ReadEntry(key, value); hasEntries = true)
        take(key, value);
    if (isPlain && plain.IsAtEnd())
        return true;
    const GString rest = hasEntries ? plain.GetRest() : text;
    if (hasEntries && rest.startsWith(QChar(QChar::ByteOrderMark)))
        return false;  // a stray character here; a stream would take it for the mark of its encoding
    return ReadFromText(rest, [&](GBin2TextStream& stream) {
        return (hasEntries || ReadBegin(stream)) &&
               ReadEntries(stream, [&](const GString& keyText, GString&& valueText) {
                   take(QStringRef(&keyText), DictValue(QStringRef(&valueText), false));
                   return true;
               });
    });
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadBegin(GBin2TextStream& stream)
{
    stream.SkipWhitespace(true);
    mPosition = stream.GetPosition();
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
        mPosition = stream.GetPosition();
        if (!stream.ReadQuotedString(keyText))
            return ReadEnd(stream);
        stream.SkipWhitespace(false);
        GString value;
        if (!stream.ReadQuotedString(value))
            return false;
        const bool isWhole = stream.SkipLine() && !stream.HasLostBytes();
        if (!isWhole)
            NoteDamage();
        if (!takeEntry(keyText, std::move(value)))
            return false;
    }
}

template <typename Key, typename Value>
bool GDictBufferReader<Key, Value>::ReadEnd(GBin2TextStream& stream)
{
    GString token;
    const bool isEnd = stream.ReadString(token) && (IsEndMarker(token) || token.startsWith(QLatin1Char('#')));
    if (!isEnd)
        return false;
    mHasEndedDocument = token == PrefMarkers::cEndDocument;
    const bool isWhole = stream.SkipLine() && (IsEndMarker(token) || mHasEndedDocument);
    if (!isWhole)
        NoteDamage();
    return true;
}

template <typename Key, typename Value>
void GDictBufferReader<Key, Value>::NoteDamage()
{
    if (mDamagePosition < 0)
        mDamagePosition = mPosition;
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
