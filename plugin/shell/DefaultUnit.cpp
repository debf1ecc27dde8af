#include "plugin/shell/DefaultUnit.h"

#include "foundation/core/GUnitSupport.h"
#include "plugin/host/HostCalls.h"

static int32_t GetUnitCode(ClassID unit)
{
    switch (unit) {
        case HostUnitID::cPicas:
            return GUnitSupport::cPicas;
        case HostUnitID::cInches:
        case HostUnitID::cDecimalInches:
            return GUnitSupport::cInches;
        case HostUnitID::cCentimetres:
            return GUnitSupport::cCentimetres;
        case HostUnitID::cMillimetres:
            return GUnitSupport::cMillimetres;
        default:
            return GUnitSupport::cPoints;
    }
}

void TakeDefaultUnit(IActiveContext* context)
{
    const auto preferences = QueryPreferences(HostInterfaceID::cUnitPreferences, context);
    const ClassID unit = preferences ? preferences->GetHorizontalUnit() : HostUnitID::cPoints;
    GUnitSupport::SetDefaultUnitCode(GetUnitCode(unit));
}
