#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>
#include <QJsonObject>

namespace
{
void PrintOrigins(const HopboxRegistry& registry, bool isJson)
{
    const QStringList origins = registry.GetAllowedOrigins();
    if (isJson) {
        QJsonArray json = QJsonArray::fromStringList(origins);
        DamageNotice::AddTo(json, registry);
        HopboxOutput::PrintJson(json);
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
        PrintOrigins(registry, arguments.Has("json"));
    const int status = DamageNotice::Tell(registry);
    return isSetting ? cExitDone : status;
}
}  // namespace

const Command cOriginsCommand = {"origins", "origins [VALUE... | --none | --json]", Run};
