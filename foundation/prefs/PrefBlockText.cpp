#include "foundation/prefs/PrefBlockText.h"

#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GDictUtil.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GText2BinStream.h"

static constexpr int cPiece = 4096;

PrefBlockText::PrefBlockText(GText2BinStream& stream) : mStream(&stream), mText(mOwnText)
{
    mOwnText.reserve(2 * cPiece);
}

PrefBlockText::PrefBlockText(GString& text) : mStream(nullptr), mText(text) {}

void PrefBlockText::AddMarker(QLatin1String marker)
{
    mText.append(marker);
    EndLine();
}

void PrefBlockText::AddEmptyLine()
{
    EndLine();
}

void PrefBlockText::AddLine(const GBuffer& name)
{
    GBufferSupport::AppendQuotedName(mText, name);
    EndLine();
}

void PrefBlockText::AddLine(const GString& element)
{
    GStringSupport::AppendQuotedString(mText, element);
    EndLine();
}

void PrefBlockText::AddEntry(const GBuffer& key, const GString& value)
{
    GBufferSupport::AppendQuotedName(mText, key);
    AddValue(value);
}

void PrefBlockText::AddEntry(const GString& key, const GString& value)
{
    GStringSupport::AppendQuotedString(mText, key);
    AddValue(value);
}

void PrefBlockText::AddValue(const GString& value)
{
    mText.append(QLatin1Char(' '));
    GStringSupport::AppendQuotedString(mText, value);
    EndLine();
}

void PrefBlockText::EndLine()
{
    mText.append(GDictUtil::GetEOLString());
    if (mStream != nullptr && mText.size() >= cPiece)
        Flush();
}

void PrefBlockText::Flush()
{
    if (mStream == nullptr)
        return;
    mStream->Write(mText);
    mText.resize(0);
}
