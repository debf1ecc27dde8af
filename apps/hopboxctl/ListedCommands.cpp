#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

// "remove" and "restore": whether the export dialog lists a Hopbox.

namespace
{
int SetListed(const CliCall& call, bool isListed)
{
    const QString name = call.GetArgument(0);
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    const QString key = registry.FindKey(name);
    const bool isChanged =
        registry.ChangeEntry(name, [&](HopboxRegistryEntry& entry) { entry.isPlugin = isListed; });
    if (isChanged) {
        SetResult(QJsonObject{{QStringLiteral("Key"), key}});
        return cCliDone;
    }
    QString unused;
    HopboxOutput::FindOrFail(registry, name, unused);
    return cCliFailed;
}

int RunRemove(const CliCall& call)
{
    return SetListed(call, false);
}

int RunRestore(const CliCall& call)
{
    return SetListed(call, true);
}
}  // namespace

const Command cRemoveCommand = {
    {"remove",
     "take a Hopbox off the list of the export dialog",
     "This is what \"Remove\" in the dialog does. Nothing is deleted: \"hopboxctl restore\" brings it back.",
     {{"NAME", "the Hopbox"}},
     {},
     {{"hopboxctl remove Press", "The export dialog no longer lists \"Press\"."}}},
    RunRemove};

const Command cRestoreCommand = {{"restore",
                                  "bring a removed Hopbox back into the list of the export dialog",
                                  "",
                                  {{"NAME", "the Hopbox"}},
                                  {},
                                  {{"hopboxctl restore Press", "The export dialog lists \"Press\" again."}}},
                                 RunRestore};
