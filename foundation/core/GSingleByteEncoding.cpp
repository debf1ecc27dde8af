#include "foundation/core/GSingleByteEncoding.h"

#include <algorithm>

GSingleByteEncoding::GSingleByteEncoding(const GString& name, const UpperHalf& upperHalf, Controls controls)
    : GEncoding(name, ByteOrder::cNone), mUpperHalf(upperHalf), mControls(controls)
{
    for (size_t index = 0; index < mBytes.size(); ++index)
        mBytes[index] = {upperHalf[index], static_cast<char>(0x80 + index)};
    std::sort(mBytes.begin(), mBytes.end());
}

GString GSingleByteEncoding::Decode(const GBuffer& bytes) const
{
    GString text(bytes.size(), Qt::Uninitialized);
    QChar* target = text.data();
    for (const char byte : bytes) {
        const auto value = static_cast<uchar>(byte);
        *target++ = QChar(value < 0x80 ? char16_t{value} : mUpperHalf[value - 0x80]);
    }
    return text;
}

GBuffer GSingleByteEncoding::EncodeText(const GString& text, char replacement) const
{
    GBuffer bytes;
    bytes.reserve(text.size());
    for (int index = 0; index < text.size(); ++index) {
        const QChar character = text.at(index);
        const bool isPair =
            character.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate();
        if (character.unicode() < 0x80)
            bytes.append(static_cast<char>(character.unicode()));
        else
            bytes.append(EncodeUpper(character.unicode(), replacement));
        if (isPair)
            ++index;
    }
    return bytes;
}

char GSingleByteEncoding::EncodeUpper(char16_t character, char replacement) const
{
    const auto found = std::lower_bound(
        mBytes.begin(), mBytes.end(), character,
        [](const std::pair<char16_t, char>& entry, char16_t wanted) { return entry.first < wanted; });
    if (found != mBytes.end() && found->first == character)
        return found->second;
    if (character < 0xA0 && mControls == Controls::cByNumber)
        return static_cast<char>(character);
    return replacement;
}
