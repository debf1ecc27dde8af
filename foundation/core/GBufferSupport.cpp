#include "foundation/core/GBufferSupport.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/core/GEncoding.h"

namespace
{
template <typename Unit>
bool IsLead(Unit unit)
{
    const ushort number = EscapeCodes::GetNumber(unit);
    return number == '\\' || number == 0x80 || number == 0xA5;
}

template <typename Text>
void ReplaceEscapeCodes(Text& text)
{
    Text result;
    result.reserve(text.size());
    const auto end = text.cend();
    for (auto at = text.cbegin(); at != end; ++at) {
        const bool isEscape = IsLead(*at) && at + 1 != end && EscapeCodes::AppendMeaning(result, *(at + 1));
        if (isEscape)
            ++at;
        else
            result.append(*at);
    }
    text = result;
}
}  // namespace

void GBufferSupport::ASCIIReplaceSpecialChars(GBuffer& text)
{
    GBuffer result;
    result.reserve(text.size());
    EscapeCodes::AppendEscaped(result, text.cbegin(), text.cend());
    text = result;
}

void GBufferSupport::ASCIIReplaceEscapeCodes(GBuffer& text)
{
    ReplaceEscapeCodes(text);
}

void GBufferSupport::UniReplaceEscapeCodes(GString& text)
{
    ReplaceEscapeCodes(text);
}

GString GBufferSupport::GetNameText(const GBuffer& name)
{
    return GString::fromLatin1(name.constData(), name.size());
}

GBuffer GBufferSupport::GetNameFromText(const GString& text)
{
    GBuffer name(text.size(), Qt::Uninitialized);
    char* target = name.data();
    for (const QChar character : text) {
        if (character.unicode() > 0xFF)
            return GEncoding::GetWinAnsi()->Encode(text);
        *target++ = static_cast<char>(character.unicode());
    }
    return name;
}

void GBufferSupport::AppendQuotedName(GString& target, const GBuffer& name)
{
    target.append(QLatin1Char('"'));
    EscapeCodes::AppendEscaped(target, name.cbegin(), name.cend());
    target.append(QLatin1Char('"'));
}
