#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

namespace
{
// The project archive that goes with the entry: one that hopboxctl made. Else empty.
GPathName GetOwnArchive(const HopboxRegistry& registry, const QString& key)
{
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    return record && ProjectPlace::IsOurs(record->entry.contextFilePath) ? record->entry.contextFilePath
                                                                         : GPathName();
}

int DeleteArchive(const HopboxRegistry& registry, const GPathName& archive)
{
    GString otherName;
    HopboxRegistryEntry other;
    if (archive.IsEmpty() || registry.FindByContextFile(archive, otherName, other) ||
        ProjectPlace::Remove(archive))
        return cCliDone;
    PrintError(
        QStringLiteral("The Hopbox is no longer registered, but its files in \"%1\" can't all be deleted.")
            .arg(archive.GetParent().GetNativePath()));
    return cCliFailed;
}

int Run(const CliCall& call)
{
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    const QString key = registry.FindKey(call.GetArgument(0));
    const GPathName archive = GetOwnArchive(registry, key);
    const bool isDeleted = !key.isEmpty() && registry.RemoveEntry(key);
    if (!isDeleted)
        return HopboxOutput::FailUnknown(registry, call.GetArgument(0));
    SetResult(QJsonObject{{QStringLiteral("Key"), key}});
    return DeleteArchive(registry, archive);
}
}  // namespace

const Command cDeleteCommand = {
    {"delete",
     "delete a Hopbox",
     "Its project archive goes too when hopboxctl made it. To take it off the dialog's list only, use "
     "\"remove\".",
     {{"NAME", "the Hopbox"}},
     {},
     {{"hopboxctl delete Press", "The Hopbox \"Press\" is gone, and its settings with it."}}},
    Run};
