#pragma once

#include "foundation/core/GString.h"

// When settings are stored, replaces what may change between two runs, such as a folder that may move, by
// variables. When settings are read, replaces the variables again. It is registered with the store, which
// calls it for the kinds of values for which it says that it is responsible.
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

    // The text as it is stored; unchanged if it holds nothing to replace.
    virtual GString InsertVariables(const GString& text) const = 0;

    // The reverse.
    virtual GString ReplaceVariables(const GString& text) const = 0;
};
