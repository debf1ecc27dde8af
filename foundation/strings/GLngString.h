#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <variant>
#include <vector>

// A text of the string pool with parameters: `%1` to `%99` in the text stand for the first to the
// ninety-ninth parameter. The texts are looked up when the whole text is made, in the language that is
// current then.
class GLngString
{
public:
    explicit GLngString(uint32_t code) : mCode(code) {}

    // Adds the next parameter: a text that is used unchanged, or the text of a code.
    void AddString(const GString& text) { mParameters.emplace_back(text); }
    void AddStringID(uint32_t code) { mParameters.emplace_back(code); }

    // The text with its parameters in place. Places inside a parameter's own text are not replaced. A place
    // without a parameter stays as it is. Empty when the code is unknown; a parameter whose code is unknown
    // is empty.
    GString GetReadableString() const;

private:
    GString GetParameter(size_t index) const;

    uint32_t mCode;
    std::vector<std::variant<GString, uint32_t>> mParameters;
};
