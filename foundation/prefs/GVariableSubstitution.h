#pragma once

#include "foundation/core/GString.h"

// Puts variables in place of what may change between two runs, such as a folder that may move, when
// settings are stored, and takes them back when they are read. Registered with the store, which calls it for
// the kinds of values for which it declares itself responsible.
class GVariableSubstitution
{
public:
    enum class Kind
    {
        cString,
        cPathName
    };

    GVariableSubstitution() = default;
    virtual ~GVariableSubstitution() = default;
    GVariableSubstitution(const GVariableSubstitution&) = delete;
    GVariableSubstitution& operator=(const GVariableSubstitution&) = delete;

    virtual bool IsResponsible(Kind kind) const = 0;

    // The text as it is stored; unchanged where nothing in it is known.
    virtual GString InsertVariables(const GString& text) const = 0;

    // The reverse.
    virtual GString ReplaceVariables(const GString& text) const = 0;
};
