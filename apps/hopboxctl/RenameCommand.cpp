#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOptions.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

namespace
{
int Run(const CliCall& call)
{
    const QString name = call.GetArgument(0);
    const QString newName = call.GetArgument(1);
    if (!HopboxOptions::IsUsable(QStringLiteral("A Hopbox's name"), newName))
        return cCliFailed;
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    const QString key = registry.FindKey(name);
    const HopboxRegistry::Renaming renaming = registry.RenameEntry(name, newName);
    switch (renaming) {
        case HopboxRegistry::Renaming::cDone:
            SetResult(QJsonObject{{QStringLiteral("Key"), key}});
            return cCliDone;
        case HopboxRegistry::Renaming::cTaken:
            return HopboxOutput::FailTaken(newName);
        case HopboxRegistry::Renaming::cNotFound:
            break;
    }
    QString unused;
    HopboxOutput::FindOrFail(registry, name, unused);
    return cCliFailed;
}
}  // namespace

const Command cRenameCommand = {
    {"rename",
     "give a Hopbox another name",
     "Its name in the list of the export dialog changes along when it was the same. Its key stays.",
     {{"NAME", "the Hopbox"}, {"NEW-NAME", "its new name, which must be free"}},
     {},
     {{"hopboxctl rename Press 'Press, coated'", "The Hopbox \"Press\" is \"Press, coated\" from now on."}}},
    Run};
