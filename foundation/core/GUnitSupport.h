#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// Units of length by their codes: 0 points, 1 picas, 2 inches, 3 centimetres, 4 millimetres. Any other code
// counts as points. For any thread.
namespace GUnitSupport
{
constexpr int32_t cPoints = 0;
constexpr int32_t cPicas = 1;
constexpr int32_t cInches = 2;
constexpr int32_t cCentimetres = 3;
constexpr int32_t cMillimetres = 4;

// The unit in which lengths are shown to the user; points until one is set.
void SetDefaultUnitCode(int32_t code);
int32_t GetDefaultUnitCode();

double FromPoints(double points, int32_t code);
double ToPoints(double length, int32_t code);

// "points", "picas", "inches", "centimetres", "millimetres"; English, for logs and as source of a
// translation.
GString GetName(int32_t code);

// What is written after a number: "pt", "p", "in", "cm", "mm".
GString GetAbbreviation(int32_t code);
}  // namespace GUnitSupport
