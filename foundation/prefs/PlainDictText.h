#pragma once

#include "foundation/prefs/DictValue.h"

// Reads the entries of a dictionary block from a text in memory, as long as they have the form that our
// writers of settings use: marker and entries each on a line of its own with CR LF, one blank between key and
// value, no escape in a key. The streams read every form and go on where this class stops. It exists for its
// speed: bench/prefs reads 1,000 records in 0.4 of the time of a stream and a dictionary.
class PlainDictText
{
public:
    // The text outlives the reader.
    explicit PlainDictText(const GString& text);

    // Reads the begin marker. False, with nothing read, when the text begins differently.
    [[nodiscard]] bool ReadBegin();

    // Reads an entry; key and value are parts of the text. False, with nothing read, when there is no entry
    // here, or one in another form.
    [[nodiscard]] bool ReadEntry(QStringRef& key, DictValue& value);

    // Whether the next word ends the block.
    bool IsAtEnd() const;

    // What was not read yet, in the memory of the text.
    GString GetRest() const;

private:
    bool IsHere(int position, QLatin1String text) const;
    int FindQuote(int position) const;
    int FindValueEnd(int position, bool& hasEscapes) const;

    const GString& mText;
    bool mMayHoldEscapes;
    int mPosition = 0;
};
