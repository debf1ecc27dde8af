#include "widgets/GQUILengthText.h"

#include "foundation/core/GUnitSupport.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace
{
// One form for all: picas with their points, or a number with or without a unit.
const QRegularExpression& GetPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*(?<sign>[+-]?)(?:(?<picas>N)?\\s*p\\s*(?<points>N)?"
                       "|(?<number>N)\\s*(?<unit>pt|in|\"|cm|mm)?)\\s*$")
            .replace(QLatin1Char('N'), QLatin1String("(?:\\d{1,6}(?:[.,]\\d{0,6})?|[.,]\\d{1,6})")),
        QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

double ToNumber(QString text)
{
    return text.replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
}

int32_t GetUnitCode(const QString& unit, int32_t fallback)
{
    if (unit.isEmpty())
        return fallback;
    if (unit == QLatin1String("\""))
        return GUnitSupport::cInches;
    for (const int32_t code : {GUnitSupport::cInches, GUnitSupport::cCentimetres, GUnitSupport::cMillimetres})
        if (unit.compare(GUnitSupport::GetAbbreviation(code), Qt::CaseInsensitive) == 0)
            return code;
    return GUnitSupport::cPoints;
}

QString FormatNumber(double number, int decimals, QChar decimalSign)
{
    const double scale = std::pow(10, decimals);
    return QString::number(std::round(number * scale) / scale, 'f', QLocale::FloatingPointShortest)
        .replace(QLatin1Char('.'), decimalSign);
}

QString FormatPicas(double points, QChar decimalSign)
{
    const double rounded = std::round(std::abs(points) * 1000) / 1000;
    const double picas = std::floor(rounded / 12);
    return (points < 0 ? QStringLiteral("-") : QString()) + FormatNumber(picas, 0, decimalSign) +
           GUnitSupport::GetAbbreviation(GUnitSupport::cPicas) +
           FormatNumber(rounded - 12 * picas, 3, decimalSign);
}
}  // namespace

bool GQUILengthText::HasOnlyItsCharacters(const QString& text)
{
    static const QString characters = QStringLiteral(" 0123456789.,+-\"ptincmPTINCM");
    return std::all_of(text.begin(), text.end(),
                       [](QChar character) { return characters.contains(character); });
}

std::optional<double> GQUILengthText::ToPoints(const QString& text, int32_t unitCode)
{
    const QRegularExpressionMatch match = GetPattern().match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const double sign = match.captured(QStringLiteral("sign")) == QLatin1String("-") ? -1 : 1;
    const QString number = match.captured(QStringLiteral("number"));
    if (!number.isEmpty())
        return sign * GUnitSupport::ToPoints(ToNumber(number),
                                             GetUnitCode(match.captured(QStringLiteral("unit")), unitCode));
    const QString picas = match.captured(QStringLiteral("picas"));
    const QString points = match.captured(QStringLiteral("points"));
    if (picas.isEmpty() && points.isEmpty())
        return std::nullopt;
    return sign * (GUnitSupport::ToPoints(ToNumber(picas), GUnitSupport::cPicas) + ToNumber(points));
}

QString GQUILengthText::FromPoints(double points, int32_t unitCode, QChar decimalSign)
{
    if (unitCode == GUnitSupport::cPicas)
        return FormatPicas(points, decimalSign);
    const int decimals = unitCode == GUnitSupport::cInches ? 4 : 3;
    return FormatNumber(GUnitSupport::FromPoints(points, unitCode), decimals, decimalSign) +
           QLatin1Char(' ') + GUnitSupport::GetAbbreviation(unitCode);
}
