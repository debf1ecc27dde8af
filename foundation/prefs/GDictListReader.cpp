#include "foundation/prefs/GDictListReader.h"

#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/PrefKey.h"
#include "foundation/prefs/PrefMarkers.h"

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::Read(GInputStream& source, const GEncodingRef& encoding,
                                                      Groups& groups)
{
    groups.Clear();
    GBufferedInputStream buffered(source);
    GBin2TextStream stream(buffered, encoding);
    stream.SkipWhitespace(true);
    mStopPosition = stream.GetPosition();
    GString token;
    if (!stream.ReadString(token) || !IsBeginMarker(token))
        return false;
    mStopPosition = -1;
    return ReadGroups(stream, groups);
}

template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::ReadGroups(GBin2TextStream& stream, Groups& groups)
{
    GDictBufferReader<EntryKey, Value> blockReader;
    GString name;
    for (;;) {
        stream.SkipWhitespace(true);
        const int64_t position = stream.GetPosition();
        if (!stream.ReadQuotedString(name))
            return ReadEnd(stream, position);
        const GroupKey group = ConvertKey(name);
        if (!blockReader.Read(stream, groups.Insert(group, {}))) {
            groups.Remove(group);
            mStopPosition = blockReader.GetStopPosition();
            return true;
        }
        if (groups.IsCrowded()) {
            mStopPosition = stream.GetPosition();
            return true;
        }
    }
}

// Reads what stands where a group's name would: the end marker, or nothing.
template <typename GroupKey, typename EntryKey, typename Value>
bool GDictListReader<GroupKey, EntryKey, Value>::ReadEnd(GBin2TextStream& stream, int64_t position)
{
    const bool hasUnclosedName = stream.GetPosition() != position;
    GString token;
    const bool hasToken = stream.ReadString(token);
    const bool isEnd = !hasToken || IsEndMarker(token);
    if (hasUnclosedName || !isEnd)
        mStopPosition = position;
    return isEnd;
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
