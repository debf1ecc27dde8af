#pragma once

#include <QString>

#include <cstdint>
#include <optional>

// Lengths as people write them: "9", "9 pt", "3,5 mm", "0.125in", "1 cm", "1p6" (one pica and six points).
// The decimal sign is a point or a comma, and letters may be of either case. Units are codes of GUnitSupport.
namespace GQUILengthText
{
// Whether a text has only characters that lengths can have, in any order.
bool HasOnlyItsCharacters(const QString& text);

// In points; a number without a unit has the given unit. Empty when the text is not a length.
std::optional<double> ToPoints(const QString& text, int32_t unitCode);

// In the unit, which is written after the number, exact to a thousandth (inches: a ten-thousandth).
QString FromPoints(double points, int32_t unitCode, QChar decimalSign);
}  // namespace GQUILengthText
