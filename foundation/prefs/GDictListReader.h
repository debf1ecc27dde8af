#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/GDictBufferReader.h"

class GInputStream;

// Reads a whole settings document: groups, each with a name and a dictionary block. Reads until the first
// damage and keeps what came before it. Only a part of the source is in memory at a time, never the whole.
//
// There are two instances: GroupKey is GBuffer, EntryKey is GBuffer or GString, Value is GString.
template <typename GroupKey, typename EntryKey, typename Value>
class GDictListReader
{
public:
    using Groups = GDict<GroupKey, GDict<EntryKey, Value>>;

    virtual ~GDictListReader() = default;

    // Reads the document in `encoding`, null to find it (see GBin2TextStream). A group that comes again
    // replaces the earlier one. False, without any group, when the source does not begin like a document.
    // False, but with the groups, when something other than the end marker follows them. A damaged group and
    // everything after it are left out; the result is then still true, and GetDamagePosition tells of the
    // damage.
    [[nodiscard]] bool Read(GInputStream& source, const GEncodingRef& encoding, Groups& groups);

    // The byte of the source at which the first damage begins that the last Read found: what it left out or
    // ignored, or the end of the data if the end marker is missing. -1 when there was none; then the groups
    // hold everything that the source held.
    int64_t GetDamagePosition() const { return mDamagePosition; }

protected:
    virtual GroupKey ConvertKey(const GString& text) const;
    virtual bool IsBeginMarker(const GString& token) const;
    virtual bool IsEndMarker(const GString& token) const;

private:
    [[nodiscard]] bool ReadGroups(GBin2TextStream& stream, Groups& groups);
    [[nodiscard]] bool ReadEnd(GBin2TextStream& stream, int64_t position, bool hasEnded);

    void NoteDamage(int64_t position);

    int64_t mDamagePosition = -1;
};

extern template class GDictListReader<GBuffer, GBuffer, GString>;
extern template class GDictListReader<GBuffer, GString, GString>;
