#include "foundation/core/GStringSupport.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/core/GBufferSupport.h"

#include <QLocale>

#include <cmath>

#include <algorithm>

namespace
{
constexpr ushort cFirstPlain = 0x20;
constexpr ushort cPlainCount = 95;
constexpr QChar cScrambleEscape = QLatin1Char('~');
constexpr int cScrambleDigits = 4;

bool IsPlain(QChar unit)
{
    return unit.unicode() >= cFirstPlain && unit.unicode() < cFirstPlain + cPlainCount;
}

// The steps by which the characters of a scrambled text move.
class ScrambleSteps
{
public:
    ushort GetNext()
    {
        const auto step = static_cast<ushort>((mState >> 16) % cPlainCount);
        mState = mState * 1103515245u + 12345u;
        return step;
    }

private:
    uint32_t mState = 0x6D6F7276;
};

QChar Move(QChar plain, ushort step)
{
    return QChar(static_cast<ushort>(cFirstPlain + (plain.unicode() - cFirstPlain + step) % cPlainCount));
}

GString WithPlainCharactersOnly(const GString& text)
{
    GString plain;
    plain.reserve(text.size());
    for (const QChar unit : text) {
        if (IsPlain(unit) && unit != cScrambleEscape)
            plain += unit;
        else
            plain += cScrambleEscape + GString::number(unit.unicode(), 16)
                                           .toUpper()
                                           .rightJustified(cScrambleDigits, QLatin1Char('0'));
    }
    return plain;
}

bool IsHexDigit(QChar character)
{
    return QStringLiteral("0123456789ABCDEFabcdef").contains(character);
}

GString WithAllCharacters(const GString& plain)
{
    GString text;
    text.reserve(plain.size());
    for (int index = 0; index < plain.size(); ++index) {
        const QStringRef digits = plain.midRef(index + 1, cScrambleDigits);
        const bool isUnit = plain.at(index) == cScrambleEscape && digits.size() == cScrambleDigits &&
                            std::all_of(digits.begin(), digits.end(), IsHexDigit);
        text += isUnit ? QChar(digits.toUShort(nullptr, 16)) : plain.at(index);
        if (isUnit)
            index += cScrambleDigits;
    }
    return text;
}
}  // namespace

void GStringSupport::ReplaceSpecialChars(GString& text)
{
    GString escaped(2 * text.size(), Qt::Uninitialized);
    const auto begin = reinterpret_cast<ushort*>(escaped.data());
    const ushort* const end = EscapeCodes::WriteEscaped(text.cbegin(), text.cend(), begin);
    text = GString(escaped.constData(), static_cast<int>(end - begin));
}

void GStringSupport::QuoteString(GString& text)
{
    ReplaceSpecialChars(text);
    text = QLatin1Char('"') + text + QLatin1Char('"');
}

void GStringSupport::SetSpecialCharacters(GString& text)
{
    GBufferSupport::UniReplaceEscapeCodes(text);
}

GString GStringSupport::Scramble(const GString& text)
{
    GString scrambled = WithPlainCharactersOnly(text);
    ScrambleSteps steps;
    for (QChar& character : scrambled)
        character = Move(character, steps.GetNext());
    return scrambled;
}

GString GStringSupport::DeScramble(const GString& scrambled)
{
    GString plain = scrambled;
    ScrambleSteps steps;
    for (QChar& character : plain) {
        const ushort step = steps.GetNext();
        if (IsPlain(character))
            character = Move(character, cPlainCount - step);
    }
    return WithAllCharacters(plain);
}

GString GStringSupport::FromBool(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

bool GStringSupport::ToBool(const GString& text)
{
    return text == QLatin1String("true");
}

bool GStringSupport::ToBool(const QStringRef& text)
{
    return text == QLatin1String("true");
}

GString GStringSupport::FromInt32(int32_t value)
{
    return GString::number(value);
}

int32_t GStringSupport::ToInt32(const GString& text, int32_t fallback)
{
    bool isNumber = false;
    const int32_t value = text.toInt(&isNumber);
    return isNumber ? value : fallback;
}

GString GStringSupport::FromReal(double value)
{
    const GString text = GString::number(value, 'g', QLocale::FloatingPointShortest);
    return value == 0 && std::signbit(value) ? QStringLiteral("-0") : text;  // Qt leaves that sign out
}

double GStringSupport::ToReal(const GString& text, double fallback)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber ? value : fallback;
}
