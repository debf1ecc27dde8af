#pragma once

#include "foundation/core/GDict.h"
#include "foundation/core/GString.h"
#include "foundation/prefs/DictValue.h"

#include <functional>

class GBin2TextStream;

// Reads one dictionary block into a dictionary. A key that comes again replaces the earlier value. The rest
// of a line after a value is ignored. Any word that begins with `#` ends the block, so nothing is lost if the
// end marker is missing before that of the document.
//
// There are two instances: Key is GBuffer or GString, Value is GString.
template <typename Key, typename Value>
class GDictBufferReader
{
public:
    virtual ~GDictBufferReader() = default;

    // Reads from the begin marker to the end of the line of the end marker. False when there is no block
    // here, or a damaged one: a key without a value, a stray word, the end of the data. What was read before
    // the damage is in the dictionary anyway.
    [[nodiscard]] bool Read(GBin2TextStream& stream, GDict<Key, Value>& dict);

    // Reads a block that is the value of an entry. Text after the block is ignored.
    [[nodiscard]] bool ReadText(const GString& text, GDict<Key, Value>& dict);

    // The same, but each entry is given to `take` when it is read, and is valid only during that call. A key
    // that comes twice is passed twice.
    using Sink = std::function<void(const QStringRef& key, const DictValue& value)>;
    [[nodiscard]] bool ReadText(const GString& text, const Sink& take);

    // The byte of the source at which the first damage begins that the last Read found; -1 when it found
    // none. Ignored parts count as damage, too, because they would be lost in a copy: text after a value, a
    // wrong end marker, bytes that are not characters. After a Read that gave false there is always damage.
    int64_t GetDamagePosition() const { return mDamagePosition; }

    // Whether the last block that was read ended with the end marker of the whole document.
    bool HasEndedDocument() const { return mHasEndedDocument; }

protected:
    // Makes a key from the text that was read: for GBuffer, GBufferSupport::GetNameFromText.
    virtual Key ConvertKey(const GString& text) const;

    virtual bool IsBeginMarker(const GString& token) const;
    virtual bool IsEndMarker(const GString& token) const;

private:
    [[nodiscard]] bool ReadEnd(GBin2TextStream& stream);
    [[nodiscard]] bool ReadBegin(GBin2TextStream& stream);
    void NoteDamage();
    template <typename TakeEntry>
    [[nodiscard]] bool ReadEntries(GBin2TextStream& stream, TakeEntry takeEntry);

    int64_t mPosition = 0;  // where the current marker or entry begins
    int64_t mDamagePosition = -1;
    bool mHasEndedDocument = false;
};

extern template class GDictBufferReader<GBuffer, GString>;
extern template class GDictBufferReader<GString, GString>;
