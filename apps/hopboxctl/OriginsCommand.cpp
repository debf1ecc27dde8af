#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>

namespace
{
void PrintOrigins(const QStringList& origins, bool isJson)
{
    if (isJson) {
        HopboxOutput::PrintJson(QJsonArray::fromStringList(origins));
        return;
    }
    for (const QString& origin : origins)
        Print(HopboxOutput::GetShown(origin) + QLatin1Char('\n'));
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("json"), QStringLiteral("none")});
    const bool isSetting = arguments.Has("none") || !arguments.GetRest().isEmpty();
    if (!arguments.AreValid() || (arguments.Has("none") && !arguments.GetRest().isEmpty()) ||
        (isSetting && arguments.Has("json")))
        return cExitUsage;
    HopboxRegistry registry;
    if (isSetting)
        registry.SetAllowedOrigins(arguments.GetRest());
    else
        PrintOrigins(registry.GetAllowedOrigins(), arguments.Has("json"));
    return cExitDone;
}
}  // namespace

const Command cOriginsCommand = {"origins", "origins [VALUE... | --none | --json]", Run};
