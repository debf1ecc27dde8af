#pragma once

#include "foundation/core/GString.h"

// A value of a dictionary block, in the text that is read.
class DictValue
{
public:
    DictValue() = default;

    // What stands between the quotes.
    DictValue(const QStringRef& quoted, bool hasEscapes) : mQuoted(quoted), mHasEscapes(hasEscapes) {}

    // Without escapes, in memory of its own.
    GString GetText() const;

    // Without escapes, as a part of the text that is read, or else of the memory given.
    QStringRef GetText(GString& memory) const;

private:
    QStringRef mQuoted;
    bool mHasEscapes = false;
};
