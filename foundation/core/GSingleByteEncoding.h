#pragma once

#include "foundation/core/GEncoding.h"

#include <array>
#include <utility>

// A code page with one byte for each character: ASCII below 0x80, a table above.
class GSingleByteEncoding : public GEncoding
{
public:
    // The characters of the bytes 0x80 to 0xFF.
    using UpperHalf = std::array<char16_t, 128>;

    // What happens to the control characters U+0080 to U+009F if the table has other characters in their
    // places.
    enum class Controls
    {
        cReplaced,
        cByNumber
    };

    GSingleByteEncoding(const GString& name, const UpperHalf& upperHalf, Controls controls);

    GString Decode(const GBuffer& bytes) const override;

private:
    GBuffer EncodeText(const GString& text, char replacement) const override;
    char EncodeUpper(char16_t character, char replacement) const;

    UpperHalf mUpperHalf;
    std::array<std::pair<char16_t, char>, 128> mBytes;  // the inverse, sorted by character
    Controls mControls;
};
