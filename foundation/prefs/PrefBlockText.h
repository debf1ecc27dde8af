#pragma once

#include "foundation/core/GString.h"
#include "foundation/prefs/CollectedText.h"

class GText2BinStream;

// Builds the lines of settings texts and writes them in pieces of some thousand characters. All writers use
// only this class, so that a block looks the same wherever it is written.
class PrefBlockText
{
public:
    // Writes to a stream, or appends to a text; either outlives this.
    explicit PrefBlockText(GText2BinStream& stream);
    explicit PrefBlockText(GString& text);
    PrefBlockText(const PrefBlockText&) = delete;
    PrefBlockText& operator=(const PrefBlockText&) = delete;

    // Says that about `length` characters will be added.
    void Reserve(size_t length);

    // A line that holds a marker, or nothing.
    void AddMarker(QLatin1String marker);
    void AddEmptyLine();

    // A line that holds a group's name or an element of a list. Text is GString, or GBuffer, whose bytes
    // stand for the characters with the same numbers.
    template <typename Text>
    void AddLine(const Text& text);

    // A line that holds a key and its value.
    template <typename Key>
    void AddEntry(const Key& key, const GString& value);

    // Writes what is still here. Call it last.
    void Flush();

private:
    template <typename Text>
    void AddQuoted(const Text& text);
    void EndLine();

    CollectedText mCollected;  // what was not written yet
    GText2BinStream* mStream = nullptr;
    GString* mText = nullptr;
};

extern template void PrefBlockText::AddLine(const GBuffer& text);
extern template void PrefBlockText::AddLine(const GString& text);
extern template void PrefBlockText::AddEntry(const GBuffer& key, const GString& value);
extern template void PrefBlockText::AddEntry(const GString& key, const GString& value);
