#pragma once

#include "foundation/core/GString.h"

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

    // A line that holds a marker, or nothing.
    void AddMarker(QLatin1String marker);
    void AddEmptyLine();

    // A line that holds a group's name or an element of a list.
    void AddLine(const GBuffer& name);
    void AddLine(const GString& element);

    // A line that holds a key and its value.
    void AddEntry(const GBuffer& key, const GString& value);
    void AddEntry(const GString& key, const GString& value);

    // Hands on what is still here. Call it last.
    void Flush();

private:
    void AddValue(const GString& value);
    void EndLine();

    GString mOwnText;  // what the stream has not got yet
    GText2BinStream* mStream;
    GString& mText;
};
