#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxFile.h"
#include "apps/hopboxctl/HopboxOptions.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxRegistry.h"
#include "hopbox/TemporaryFolder.h"

#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

// "export" and "import": a Hopbox in one file.

namespace
{
// Whether the file is the registry, or belongs to a Hopbox: it would be lost.
bool IsInUse(const HopboxRegistry& registry, const QFileInfo& file)
{
    const auto isIt = [&file](const GPathName& path) {
        return !path.IsEmpty() && QFileInfo(path.GetNativePath()) == file;
    };
    if (!file.exists())
        return false;
    const QStringList keys = registry.GetKeys();
    return isIt(HopboxRegistry::GetPathName()) ||
           std::any_of(keys.cbegin(), keys.cend(), [&](const QString& key) {
               const std::optional<HopboxRecord> record = registry.GetRecord(key);
               return record && (isIt(record->entry.contextFilePath) || isIt(record->entry.hopboxIconPath) ||
                                 isIt(record->entry.applicationPath));
           });
}

int RunExport(const CliCall& call)
{
    const HopboxRegistry registry;
    const int status = DamageNotice::Tell(registry);
    QString key;
    const std::optional<HopboxRecord> record = HopboxOutput::FindOrFail(registry, call.GetArgument(0), key);
    if (!record)
        return cCliFailed;
    const GPathName file = HopboxOptions::GetAbsolute(call.GetArgument(1));
    if (IsInUse(registry, QFileInfo(file.GetNativePath()))) {
        PrintError(
            QStringLiteral("\"%1\" belongs to your Hopboxes and is not overwritten. Give another file.")
                .arg(HopboxOutput::GetShown(file.GetNativePath())));
        return cCliFailed;
    }
    HopboxFile::Write(*record, file);
    SetResult(QJsonObject{{QStringLiteral("Key"), key}, {QStringLiteral("File"), file.GetNativePath()}});
    return status;
}

// Reads the file; none, with the reason told, when it can't be used.
std::optional<HopboxFile::Content> ReadOrFail(const QString& file, const GPathName& folder)
{
    if (!HopboxOptions::IsFile(QStringLiteral("FILE"), file))
        return {};
    try {
        return HopboxFile::Read(HopboxOptions::GetAbsolute(file), folder);
    } catch (const GException& error) {
        PrintError(QStringLiteral("\"%1\" can't be imported. ").arg(HopboxOutput::GetShown(file)) +
                   HopboxOutput::GetShown(error.GetDescription()));
        return {};
    }
}

// The entry of a Hopbox that comes to lie in a folder of this user.
HopboxRegistryEntry PlaceEntry(const HopboxFile::Content& content, const QString& name,
                               const ProjectPlace::NewFolder& folder)
{
    HopboxRegistryEntry entry = content.record.entry;
    for (GString* text : {&entry.pdfSettings, &entry.hopboxName}) {
        if (*text == content.record.actorName)
            *text = name;
    }
    entry.applicationPath = ProjectPlace::GetDefaultApplication();
    entry.contextFilePath = folder.GetArchivePath();
    GFileSystemBase::CopyAndRenameFile(content.archive, entry.contextFilePath, 0);
    if (!content.icon.IsEmpty()) {
        entry.hopboxIconPath = folder.GetArchivePath().GetParent().GetChild(content.icon.GetLeaf());
        GFileSystemBase::CopyAndRenameFile(content.icon, entry.hopboxIconPath, 0);
    }
    return entry;
}

int RunImport(const CliCall& call)
{
    const TemporaryFolder temporary;
    const std::optional<HopboxFile::Content> content =
        ReadOrFail(call.GetArgument(0), temporary.GetPathName());
    if (!content)
        return cCliFailed;
    const QString name = call.Has("name") ? call.Get("name") : content->record.actorName;
    if (name.isEmpty())
        return RefuseCall(QStringLiteral("The Hopbox in the file has no name: --name NEW-NAME is missing."));
    if (!HopboxOptions::IsUsable(QStringLiteral("A Hopbox's name"), name))
        return cCliFailed;
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    if (!registry.FindKey(name).isEmpty())
        return HopboxOutput::FailTaken(name);
    ProjectPlace::NewFolder folder(name);
    GString key;
    const bool isAdded = registry.AddFirstEntry(name, PlaceEntry(*content, name, folder), key);
    if (!isAdded)
        return HopboxOutput::FailTaken(name);
    folder.Keep();
    SetResult(QJsonObject{{QStringLiteral("Key"), key}, {QStringLiteral("Name"), name}});
    Print(key + QLatin1Char('\n'));
    return cCliDone;
}
}  // namespace

const Command cExportCommand = {
    {"export",
     "write a Hopbox into one file, as a backup or for another user or computer",
     "The file holds the job options, the settings and the icon. A file that is there is replaced, unless it "
     "belongs to a Hopbox.",
     {{"NAME", "the Hopbox"}, {"FILE", "the file, as Press.hopbox"}},
     {},
     {{"hopboxctl export Press Press.hopbox", "Writes the Hopbox \"Press\" into the file."}}},
    RunExport};

const Command cImportCommand = {{"import",
                                 "make a Hopbox from a file that \"export\" wrote, and print its key",
                                 "It gets a key and folders of its own. Its name must be free.",
                                 {{"FILE", "the file"}},
                                 {{"name", "NEW-NAME", "another name than in the file"}},
                                 {{"hopboxctl import Press.hopbox --name Copy",
                                   "Makes a second Hopbox \"Copy\" with the settings in the file."}}},
                                RunImport};
