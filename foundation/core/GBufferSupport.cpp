#include "foundation/core/GBufferSupport.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/core/GEncoding.h"

void GBufferSupport::ASCIIReplaceSpecialChars(GBuffer& text)
{
    GBuffer escaped(2 * text.size(), Qt::Uninitialized);
    const char* const end = EscapeCodes::WriteEscaped(text.cbegin(), text.cend(), escaped.data());
    text = GBuffer(escaped.constData(), static_cast<int>(end - escaped.constData()));
}

void GBufferSupport::ASCIIReplaceEscapeCodes(GBuffer& text)
{
    text = EscapeCodes::TakeAllBack<EscapeCodes::InTypedText, GBuffer>(text);
}

void GBufferSupport::UniReplaceEscapeCodes(GString& text)
{
    text = EscapeCodes::TakeAllBack<EscapeCodes::InTypedText, GString>(text);
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
