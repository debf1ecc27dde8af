#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "hopbox/HopboxRegistry.h"

namespace
{
// The project archive that goes with the entry: one that hopboxctl made. Else empty.
GPathName GetOwnArchive(const HopboxRegistry& registry, const QString& key)
{
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    return record && ProjectPlace::IsOurs(record->entry.contextFilePath) ? record->entry.contextFilePath
                                                                         : GPathName();
}

int RemoveArchive(const HopboxRegistry& registry, const GPathName& archive)
{
    GString otherName;
    HopboxRegistryEntry other;
    if (archive.IsEmpty() || registry.FindByContextFile(archive, otherName, other) ||
        ProjectPlace::Remove(archive))
        return cExitDone;
    PrintError(
        QStringLiteral("The Hopbox is no longer registered, but its project archive \"%1\" can't be removed.")
            .arg(archive.GetNativePath()));
    return cExitFailed;
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {});
    if (!arguments.AreValid() || arguments.GetRest().size() != 1)
        return cExitUsage;
    const QString name = arguments.GetRest().first();
    HopboxRegistry registry;
    const QString key = registry.FindKey(name);
    const GPathName archive = GetOwnArchive(registry, key);
    const bool isRemoved = !key.isEmpty() && registry.RemoveEntry(key);
    DamageNotice::Tell(registry);
    if (!isRemoved)
        return HopboxOutput::FailUnknown(name);
    return RemoveArchive(registry, archive);
}
}  // namespace

const Command cRemoveCommand = {"remove", "remove NAME", Run};
