#include "foundation/core/GUnitSupport.h"

#include <atomic>
#include <iterator>

namespace
{
struct Unit
{
    double points;  // that one of it has
    const char* name;
    const char* abbreviation;
};

constexpr Unit cUnits[] = {
    {1, "points", "pt"},
    {12, "picas", "p"},
    {72, "inches", "in"},
    {72 / 2.54, "centimetres", "cm"},
    {72 / 25.4, "millimetres", "mm"},
};

std::atomic<int32_t> defaultUnitCode{GUnitSupport::cPoints};

bool IsKnown(int32_t code)
{
    return code >= 0 && code < static_cast<int32_t>(std::size(cUnits));
}

const Unit& GetUnit(int32_t code)
{
    return cUnits[IsKnown(code) ? code : GUnitSupport::cPoints];
}
}  // namespace

void GUnitSupport::SetDefaultUnitCode(int32_t code)
{
    defaultUnitCode = IsKnown(code) ? code : cPoints;
}

int32_t GUnitSupport::GetDefaultUnitCode()
{
    return defaultUnitCode;
}

double GUnitSupport::FromPoints(double points, int32_t code)
{
    return points / GetUnit(code).points;
}

double GUnitSupport::ToPoints(double length, int32_t code)
{
    return length * GetUnit(code).points;
}

GString GUnitSupport::GetName(int32_t code)
{
    return GString::fromLatin1(GetUnit(code).name);
}

GString GUnitSupport::GetAbbreviation(int32_t code)
{
    return GString::fromLatin1(GetUnit(code).abbreviation);
}
