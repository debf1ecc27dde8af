#pragma once

#include "foundation/core/GString.h"
#include "foundation/prefs/CollectedText.h"

class GText2BinStream;

// Puts the lines of settings texts together and hands them on in pieces of some thousand characters. For the
// writers, which use nothing else, so that a block looks the same wherever it is written.
class PrefBlockText
{
public:
    // Writes to a stream, or appends to a text; either outlives this.
    explicit PrefBlockText(GText2BinStream& stream);
    explicit PrefBlockText(GString& text);
    PrefBlockText(const PrefBlockText&) = delete;
    PrefBlockText& operator=(const PrefBlockText&) = delete;

    // Says that about so many characters will come.
    void Reserve(size_t length);

    // A line that holds a marker, or nothing.
    void AddMarker(QLatin1String marker);
    void AddEmptyLine();

    // A line that holds a group's name or an element of a list. Text is GBuffer, whose bytes stand for the
    // characters of their numbers, or GString.
    template <typename Text>
    void AddLine(const Text& text);

    // A line that holds a key and its value.
    template <typename Key>
    void AddEntry(const Key& key, const GString& value);

    // Hands on what is still here. Call it last.
    void Flush();

private:
    template <typename Text>
    void AddQuoted(const Text& text);
    void EndLine();

    CollectedText mCollected;  // what was not handed on yet
    GText2BinStream* mStream = nullptr;
    GString* mText = nullptr;
};

extern template void PrefBlockText::AddLine(const GBuffer& text);
extern template void PrefBlockText::AddLine(const GString& text);
extern template void PrefBlockText::AddEntry(const GBuffer& key, const GString& value);
extern template void PrefBlockText::AddEntry(const GString& key, const GString& value);
