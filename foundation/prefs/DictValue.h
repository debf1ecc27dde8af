#pragma once

#include "foundation/core/GString.h"

// A value of a dictionary block, in the text that is read.
class DictValue
{
public:
    DictValue() = default;

    // The text between the quotes.
    DictValue(const QStringRef& quoted, bool hasEscapes) : mQuoted(quoted), mHasEscapes(hasEscapes) {}

    // Without escapes, as a copy.
    GString GetText() const;

    // Without escapes, as a part of the text that is read or, if that is not possible, of `memory`.
    QStringRef GetText(GString& memory) const;

private:
    QStringRef mQuoted;
    bool mHasEscapes = false;
};
