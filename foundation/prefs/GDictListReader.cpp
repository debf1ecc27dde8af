#include "foundation/prefs/GDictListReader.h"

#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/PrefKey.h"
#include "foundation/prefs/PrefMarkers.h"

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::Read(GInputStream& source, const GEncodingRef& encoding,
                                                      Groups& groups)
{
    groups.Clear();
    mDamagePosition = -1;
    GBufferedInputStream buffered(source);
    GBin2TextStream stream(buffered, encoding);
    stream.SkipWhitespace(true);
    const int64_t position = stream.GetPosition();
    GString token;
    const bool isDocument = stream.ReadString(token) && IsBeginMarker(token);
    if (!isDocument)
        NoteDamage(position);
    return isDocument && ReadGroups(stream, groups);
}

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::ReadGroups(GBin2TextStream& stream, Groups& groups)
{
    GDictBufferReader<EntryKey, Value> blockReader;
    GString name;
    for (bool hasEnded = false;; hasEnded = blockReader.HasEndedDocument()) {
        stream.SkipWhitespace(true);
        const int64_t position = stream.GetPosition();
        if (!stream.ReadQuotedString(name))
            return ReadEnd(stream, position, hasEnded);
        const GroupKey group = ConvertKey(name);
        if (stream.HasLostBytes() || PrefKey::IsLossy(name, group))
            NoteDamage(position);
        const bool isRead = blockReader.Read(stream, groups.Insert(group, {}));
        if (blockReader.GetDamagePosition() >= 0)
            NoteDamage(blockReader.GetDamagePosition());
        if (!isRead) {
            groups.Remove(group);
            return true;
        }
        if (groups.IsCrowded()) {
            NoteDamage(stream.GetPosition());
            return true;
        }
    }
}

// Reads what stands where a group's name would: the end marker, or nothing.
template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::ReadEnd(GBin2TextStream& stream, int64_t position,
                                                         bool hasEnded)
{
    const bool hasUnclosedName = stream.GetPosition() != position;
    GString token;
    const bool hasToken = stream.ReadString(token);
    const bool isEnd = hasToken ? IsEndMarker(token) : hasEnded;
    if (hasUnclosedName || !isEnd)
        NoteDamage(position);
    stream.SkipWhitespace(true);
    const int64_t end = stream.GetPosition();
    char byte = 0;
    if (isEnd && stream.Read(&byte, 1) == 1)
        NoteDamage(end);
    return isEnd || !hasToken;
}

template <typename GroupKey, typename EntryKey, typename Value>
void GDictListReader<GroupKey, EntryKey, Value>::NoteDamage(int64_t position)
{
    if (mDamagePosition < 0)
        mDamagePosition = position;
}

template <typename GroupKey, typename EntryKey, typename Value>
GroupKey GDictListReader<GroupKey, EntryKey, Value>::ConvertKey(const GString& text) const
{
    return PrefKey::FromText<GroupKey>(text);
}

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::IsBeginMarker(const GString& token) const
{
    return token == PrefMarkers::cBeginDocument;
}

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::IsEndMarker(const GString& token) const
{
    return token == PrefMarkers::cEndDocument;
}

template class GDictListReader<GBuffer, GBuffer, GString>;
template class GDictListReader<GBuffer, GString, GString>;
