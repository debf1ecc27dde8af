#include "foundation/prefs/PlainDictText.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/prefs/PrefMarkers.h"

#include <algorithm>
#include <cstring>

namespace
{
const QLatin1Char cQuote('"');
constexpr QLatin1Char cEscape('\\');
const QLatin1String cBetween("\" \"");  // from the end of a key to the begin of its value
const QLatin1String cLineEnd("\r\n");

GString TakeEscapesBack(const QStringRef& quoted)
{
    GString text;
    text.reserve(quoted.size());
    for (int position = 0; position < quoted.size(); ++position) {
        const bool isEscape = quoted.at(position) == cEscape && position + 1 < quoted.size();
        const QLatin1String meaning =
            isEscape ? EscapeCodes::GetMeaning(quoted.at(position + 1).unicode()) : QLatin1String();
        if (meaning.isEmpty()) {
            text.append(quoted.at(position));
        } else {
            text.append(meaning);
            ++position;
        }
    }
    return text;
}
// False when there is no escape for sure, which is found in long steps.
bool MayHoldEscape(const QChar* text, int length)
{
    return std::memchr(text, cEscape.toLatin1(), static_cast<size_t>(length) * sizeof(QChar)) != nullptr;
}
}  // namespace

bool PlainDictText::ReadBegin()
{
    const QLatin1String marker = PrefMarkers::cBeginDict;
    if (!IsHere(0, marker) || !IsHere(marker.size(), cLineEnd))
        return false;
    mPosition = marker.size() + cLineEnd.size();
    return true;
}

bool PlainDictText::ReadEntry(QStringRef& key, GString& value)
{
    if (mPosition >= mText.size() || mText.at(mPosition) != cQuote)
        return false;
    const int keyBegin = mPosition + 1;
    const int keyEnd = mText.indexOf(cQuote, keyBegin);
    if (keyEnd < 0 || !IsHere(keyEnd, cBetween))
        return false;
    key = QStringRef(&mText, keyBegin, keyEnd - keyBegin);
    const int valueBegin = keyEnd + cBetween.size();
    bool hasEscapes = false;
    const int valueEnd = FindValueEnd(valueBegin, hasEscapes);
    if (valueEnd < 0 || !IsHere(valueEnd + 1, cLineEnd) || MayHoldEscape(key.constData(), key.size()))
        return false;
    const int length = valueEnd - valueBegin;
    value = hasEscapes ? TakeEscapesBack(mText.midRef(valueBegin, length))
                       : GString(mText.constData() + valueBegin, length);
    mPosition = valueEnd + 1 + cLineEnd.size();
    return true;
}

bool PlainDictText::IsAtEnd() const
{
    return IsHere(mPosition, QLatin1String("#", 1));
}

GString PlainDictText::GetRest() const
{
    return GString::fromRawData(mText.constData() + mPosition, mText.size() - mPosition);
}

bool PlainDictText::IsHere(int position, QLatin1String text) const
{
    return mText.size() - position >= text.size() &&
           std::equal(text.begin(), text.end(), mText.cbegin() + position,
                      [](char expected, QChar character) { return character == QLatin1Char(expected); });
}

// The position of the quote that ends a value; -1 when there is none.
int PlainDictText::FindValueEnd(int position, bool& hasEscapes) const
{
    const int quote = mText.indexOf(cQuote, position);
    if (quote < 0 || !MayHoldEscape(mText.constData() + position, quote - position))
        return quote;
    for (; position < mText.size(); ++position) {
        const QChar character = mText.at(position);
        if (character == cQuote)
            return position;
        if (character == cEscape) {
            hasEscapes = true;
            ++position;
        }
    }
    return -1;
}
