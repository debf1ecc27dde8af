#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// Lengths as people write them: "9", "9 pt", "3,5 mm", "0.125in", "1 cm", "1p6" (one pica and six points).
// The decimal sign is a point or a comma, and letters may be of either case. Units are codes of GUnitSupport.
namespace GQUILengthText
{
// Whether a text holds nothing but what lengths are made of, in whatever order.
bool HasOnlyItsCharacters(const QString& text);

// In points; a bare number is of the unit given. Empty when the text is no length.
std::optional<double> ToPoints(const QString& text, int32_t unitCode);

// In the unit, which stands behind the number, to a thousandth of it (inches: a ten-thousandth).
QString FromPoints(double points, int32_t unitCode, QChar decimalSign);
}  // namespace GQUILengthText
