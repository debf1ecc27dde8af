#include "foundation/prefs/PlainDictText.h"

#include "foundation/prefs/PrefMarkers.h"

#include <algorithm>
#include <cstring>

namespace
{
const QLatin1Char cQuote('"');
constexpr QLatin1Char cEscape('\\');
const QLatin1String cBetween("\" \"");  // from the end of a key to the begin of its value
const QLatin1String cLineEnd("\r\n");

// False when there is no escape for sure, which is found in long steps.
bool MayHoldEscape(const QStringRef& text)
{
    return std::memchr(text.constData(), cEscape.toLatin1(),
                       static_cast<size_t>(text.size()) * sizeof(QChar)) != nullptr;
}
}  // namespace

PlainDictText::PlainDictText(const GString& text)
    : mText(text), mMayHoldEscapes(MayHoldEscape(QStringRef(&text)))
{
}

bool PlainDictText::ReadBegin()
{
    const QLatin1String marker = PrefMarkers::cBeginDict;
    if (!IsHere(0, marker) || !IsHere(marker.size(), cLineEnd))
        return false;
    mPosition = marker.size() + cLineEnd.size();
    return true;
}

bool PlainDictText::ReadEntry(QStringRef& key, DictValue& value)
{
    if (mPosition >= mText.size() || mText.at(mPosition) != cQuote)
        return false;
    const int keyBegin = mPosition + 1;
    const int keyEnd = FindQuote(keyBegin);
    if (keyEnd < 0 || !IsHere(keyEnd, cBetween))
        return false;
    key = QStringRef(&mText, keyBegin, keyEnd - keyBegin);
    const int valueBegin = keyEnd + cBetween.size();
    bool hasEscapes = false;
    const int valueEnd = FindValueEnd(valueBegin, hasEscapes);
    if (valueEnd < 0 || !IsHere(valueEnd + 1, cLineEnd) || (mMayHoldEscapes && MayHoldEscape(key)))
        return false;
    value = DictValue(QStringRef(&mText, valueBegin, valueEnd - valueBegin), hasEscapes);
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

// The position of the next quote; -1 when there is none. Quotes are so near that a search in long steps takes
// longer.
int PlainDictText::FindQuote(int position) const
{
    const QChar* const begin = mText.constData();
    const QChar* const end = begin + mText.size();
    const QChar* const quote = std::find(begin + position, end, cQuote);
    return quote == end ? -1 : static_cast<int>(quote - begin);
}

// The position of the quote that ends a value; -1 when there is none.
int PlainDictText::FindValueEnd(int position, bool& hasEscapes) const
{
    if (!mMayHoldEscapes)
        return FindQuote(position);
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
