#include "foundation/prefs/PrefBlockText.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/core/GDictUtil.h"
#include "foundation/prefs/GText2BinStream.h"

static constexpr size_t cPiece = 8192;  // characters

PrefBlockText::PrefBlockText(GText2BinStream& stream) : mStream(&stream) {}

PrefBlockText::PrefBlockText(GString& text) : mText(&text) {}

void PrefBlockText::Reserve(size_t length)
{
    mCollected.MakeRoom(std::min(length, 2 * cPiece));
}

void PrefBlockText::AddMarker(QLatin1String marker)
{
    mCollected.Add(marker);
    EndLine();
}

void PrefBlockText::AddEmptyLine()
{
    EndLine();
}

template <typename Text>
void PrefBlockText::AddLine(const Text& text)
{
    AddQuoted(text);
    EndLine();
}

template <typename Key>
void PrefBlockText::AddEntry(const Key& key, const GString& value)
{
    AddQuoted(key);
    mCollected.Add(QLatin1String(" ", 1));
    AddQuoted(value);
    EndLine();
}

template <typename Text>
void PrefBlockText::AddQuoted(const Text& text)
{
    char16_t* const begin = mCollected.MakeRoom(2 * static_cast<size_t>(text.size()) + 2);
    *begin = '"';
    char16_t* const end = EscapeCodes::WriteEscaped(text.cbegin(), text.cend(), begin + 1);
    *end = '"';
    mCollected.Add(static_cast<size_t>(end + 1 - begin));
}

void PrefBlockText::EndLine()
{
    static const GBuffer end = GDictUtil::GetEOLString().toLatin1();
    mCollected.Add(QLatin1String(end));
    if (static_cast<size_t>(mCollected.GetLength()) >= cPiece)
        Flush();
}

void PrefBlockText::Flush()
{
    const auto units = reinterpret_cast<const QChar*>(mCollected.GetUnits());
    if (mStream != nullptr)
        mStream->Write(GString::fromRawData(units, mCollected.GetLength()));
    else
        mText->append(units, mCollected.GetLength());
    mCollected.Clear();
}

template void PrefBlockText::AddLine(const GBuffer& text);
template void PrefBlockText::AddLine(const GString& text);
template void PrefBlockText::AddEntry(const GBuffer& key, const GString& value);
template void PrefBlockText::AddEntry(const GString& key, const GString& value);
