#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>

namespace
{
int Change(const QStringList& origins)
{
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    registry.SetAllowedOrigins(origins);
    SetResult(QJsonArray::fromStringList(origins));
    return cCliDone;
}

int Show()
{
    const HopboxRegistry registry;
    const QStringList origins = registry.GetAllowedOrigins();
    SetResult(QJsonArray::fromStringList(origins));
    for (const QString& origin : origins)
        Print(HopboxOutput::GetShown(origin) + QLatin1Char('\n'));
    return DamageNotice::Tell(registry);
}

int Run(const CliCall& call)
{
    if (call.Has("none") && !call.GetArguments().isEmpty())
        return RefuseCall(QStringLiteral("\"--none\" takes no origins beside it."));
    return call.Has("none") || !call.GetArguments().isEmpty() ? Change(call.GetArguments()) : Show();
}
}  // namespace

const Command cOriginsCommand = {
    {"origins",
     "print or set the origins whose requests the Hopboxes' web service allows",
     "Without an origin it prints those that there are.",
     {{"ORIGIN", "an origin, as https://example.org; all that are given take the place of those before",
       CliArgument::Count::cAny}},
     {{"none", "", "allow none"}},
     {{"hopboxctl origins https://shop.example", "Allows requests from this one origin only."}}},
    Run};
