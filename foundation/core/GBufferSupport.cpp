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

void Append(GBuffer& target, QLatin1String text)
{
    target.append(text.data(), text.size());
}

void Append(GString& target, QLatin1String text)
{
    target.append(text);
}

template <typename Text>
void ReplaceEscapeCodes(Text& text)
{
    Text result;
    result.reserve(text.size());
    const auto end = text.cend();
    for (auto at = text.cbegin(); at != end; ++at) {
        const bool isLead = IsLead(*at) && at + 1 != end;
        const QLatin1String meaning =
            isLead ? EscapeCodes::GetMeaning(EscapeCodes::GetNumber(at[1])) : QLatin1String();
        if (meaning.isEmpty()) {
            result.append(*at);
        } else {
            Append(result, meaning);
            ++at;
        }
    }
    text = result;
}
}  // namespace

void GBufferSupport::ASCIIReplaceSpecialChars(GBuffer& text)
{
    GBuffer escaped(2 * text.size(), Qt::Uninitialized);
    const char* const end = EscapeCodes::WriteEscaped(text.cbegin(), text.cend(), escaped.data());
    text = GBuffer(escaped.constData(), static_cast<int>(end - escaped.constData()));
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
