#pragma once

#include <QLatin1String>

// The words that begin and end the parts of a settings text. Case counts.
namespace PrefMarkers
{
constexpr QLatin1String cBeginDocument("#BEGINPREFS", 11);
constexpr QLatin1String cEndDocument("#ENDPREFS", 9);
constexpr QLatin1String cBeginDict("#BEGINDICT", 10);
constexpr QLatin1String cEndDict("#ENDDICT", 8);
constexpr QLatin1String cBeginList("#BEGINTABLE", 11);
constexpr QLatin1String cEndList("#ENDTABLE", 9);
}  // namespace PrefMarkers
