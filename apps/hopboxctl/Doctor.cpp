#include "apps/hopboxctl/Doctor.h"

#include "apps/hopboxctl/FolderRights.h"
#include "apps/hopboxctl/HopboxCheck.h"
#include "apps/hopboxctl/PrefsFile.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "apps/hopboxctl/ShellWord.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/system/GDamagedCopies.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QFileInfo>

#include <map>

using Doctor::Finding;
using ShellWord::Quote;

namespace
{
GResult RemoveSetting(const GPathName& archive, const QString& setting)
{
    HopboxProject project(archive);
    GPrefMemoryModule settings;
    return project.ReadSettings(settings).Then([&] {
        settings.Remove(HopboxProject::GetPlugInGroup(), setting.toUtf8());
        return project.WriteSettings(settings);
    });
}

// What can be read of them. The damaged archive is kept.
GResult RewriteSettings(const GPathName& archive)
{
    HopboxProject project(archive);
    GPrefMemoryModule settings;
    return project.ReadSettings(settings).Then([&] { return project.WriteSettings(settings); });
}

GResult MakeResult(bool isDone, const QString& reason)
{
    return isDone ? GResult::Success() : GResult::Failure(reason);
}

// What is to be done about a finding of a check. What the check calls a note may still need a hand.
Finding MakeFinding(const HopboxCheck::Finding& found, const HopboxCheck& check, const QString& key,
                    const QString& name)
{
    using Kind = HopboxCheck::Kind;
    const QString text = QStringLiteral("Hopbox \"%1\": %2").arg(name, found.text);
    const QString address = Quote(key);
    switch (found.kind) {
        case Kind::cNoArchive:
            return {"archive-missing", text, QStringLiteral("hopboxctl delete %1").arg(address), {}};
        case Kind::cBadArchive:
            return {"archive-damaged", text, QStringLiteral("hopboxctl delete %1").arg(address), {}};
        case Kind::cDamagedSettings:
            return {"project-settings-damaged", text,
                    QStringLiteral("hopboxctl set %1 --setting KEY=VALUE").arg(address),
                    [archive = check.archive] { return RewriteSettings(archive); }};
        case Kind::cBadJobOptions:
            return {"job-options-unusable",
                    text,
                    QStringLiteral("hopboxctl set %1 --job-options FILE").arg(address),
                    {}};
        case Kind::cNoIcon:
            return {"icon-missing", text, QStringLiteral("hopboxctl set %1 HopboxIconPath=").arg(address),
                    [key] {
                        const bool isChanged = HopboxRegistry().ChangeEntry(
                            key, [](HopboxRegistryEntry& entry) { entry.hopboxIconPath = GPathName(); });
                        return MakeResult(isChanged, QStringLiteral("There is no such Hopbox any more."));
                    }};
        case Kind::cOddSetting:
            return {
                "setting-odd", text,
                QStringLiteral("hopboxctl set %1 --without-setting %2").arg(address, Quote(found.setting)),
                [archive = check.archive, setting = found.setting] {
                    return RemoveSetting(archive, setting);
                }};
        case Kind::cOfAnotherUser:
            return {"of-another-user",
                    text,
                    QStringLiteral("hopboxctl export %1 FILE, delete it, and import FILE").arg(address),
                    {}};
        case Kind::cNoApplication:
            return {"application-missing", text, QString(), {}, false};
        case Kind::cNotListed:
            break;
    }
    return {"not-listed", text, QStringLiteral("hopboxctl restore %1").arg(address), {}, false};
}

// More than one Hopbox of a name, or of a text in the dialog's list.
void LookForTwins(const std::map<QString, QStringList>& keysByName, const char* kind, const QString& text,
                  const QString& mend, QVector<Finding>& findings)
{
    for (const auto& name : keysByName) {
        if (name.second.size() > 1)
            findings.append({kind,
                             text.arg(name.second.size()).arg(name.first),
                             mend.arg(Quote(name.second.last())),
                             {}});
    }
}

void LookAtFile(const char* kind, const GPathName& path, QVector<Finding>& findings)
{
    const QString native = path.GetNativePath();
    if (IsFileMissing(native))
        return;
    try {
        const PrefsFile file(native);
        if (file.IsDamaged())
            findings.append(
                {kind,
                 file.DescribeDamage() + QLatin1Char('.'),
                 QStringLiteral("the next change keeps a copy beside it and writes what can be read"),
                 {}});
    } catch (const GException& error) {
        findings.append({kind,
                         error.GetDescription(),
                         QStringLiteral("look at its rights and at what is in its place"),
                         {}});
    }
}
// Of a damaged file that was written anew; they are nobody's but the user's.
void LookForCopies(const QString& what, const QString& command, const GPathName& file,
                   QVector<Finding>& findings)
{
    for (const GPathName& copy : GDamagedCopies::List(file)) {
        const QString path = copy.GetNativePath();
        findings.append(
            {"damaged-copy",
             QStringLiteral("%1 is kept as \"%2\".").arg(what, path),
             QStringLiteral("hopboxctl %1 %2 shows what is in it; delete it when nothing is missed")
                 .arg(command, Quote(path)),
             {},
             false});
    }
}
}  // namespace

void Doctor::LookAtRegistry(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    LookAtFile("registry-damaged", HopboxRegistry::GetPathName(), findings);
    LookForCopies(QStringLiteral("A damaged registry"), QStringLiteral("prefs"),
                  HopboxRegistry::GetPathName(), findings);
    for (const QString& key : registry.GetKeys()) {
        if (!registry.GetRecord(key))
            findings.append({"record-unreadable",
                             QStringLiteral("The record \"%1\" can't be read.").arg(key),
                             QStringLiteral("hopboxctl delete %1").arg(Quote(key)),
                             {}});
    }
}

void Doctor::LookAtHopboxes(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    std::map<QString, QStringList> names;
    std::map<QString, QStringList> listed;
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        if (!record)
            continue;
        names[record->GetName(key)].append(key);
        // One without a text is listed under its key.
        if (record->entry.isPlugin && !record->entry.pdfSettings.isEmpty())
            listed[record->entry.pdfSettings].append(key);
        const HopboxCheck check = HopboxCheck::Make(record->entry);
        for (const HopboxCheck::Finding& found : check.problems + check.notes)
            findings.append(MakeFinding(found, check, key, record->GetName(key)));
        LookForCopies(
            QStringLiteral("A damaged project archive of the Hopbox \"%1\"").arg(record->GetName(key)),
            QStringLiteral("zip list"), record->entry.contextFilePath, findings);
    }
    LookForTwins(names, "same-name",
                 QStringLiteral("%1 Hopboxes have the name \"%2\"; commands find the first only."),
                 QStringLiteral("hopboxctl rename %1 NEW-NAME"), findings);
    LookForTwins(listed, "same-text", QStringLiteral("%1 Hopboxes look alike in the export dialog: \"%2\"."),
                 QStringLiteral("hopboxctl set %1 PDFSettings=TEXT"), findings);
}

// Of a damaged registry nobody knows what it named.
void Doctor::LookAtProjectFolders(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    if (registry.GetDamage())
        return;
    const QDir settings(HopboxRegistry::GetSettingsFolder().GetNativePath());
    for (const QString& name :
         settings.entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
        const GPathName folder = HopboxRegistry::GetSettingsFolder().GetChild(name);
        const GPathName archive = ProjectPlace::GetArchivePath(folder);
        GString actorName;
        HopboxRegistryEntry entry;
        if (registry.FindByContextFile(archive, actorName, entry))
            continue;
        const bool isEmpty =
            QDir(folder.GetNativePath()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        if (isEmpty)
            findings.append({"folder-left",
                             QStringLiteral("An empty folder is left: \"%1\".").arg(folder.GetNativePath()),
                             QStringLiteral("rmdir %1").arg(Quote(folder.GetNativePath())),
                             [path = folder.GetNativePath()] {
                                 return MakeResult(QDir().rmdir(path),
                                                   QStringLiteral("\"%1\" can't be removed.").arg(path));
                             }});
        else
            findings.append(
                {"archive-left",
                 QStringLiteral("No Hopbox has the project folder \"%1\".").arg(folder.GetNativePath()),
                 QStringLiteral(
                     "delete the folder, or make a Hopbox and set its ContextFilePath to the archive"),
                 {}});
    }
}

void Doctor::LookAtPlugInSettings(QVector<Finding>& findings)
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences);
    const GPathName file = folder.GetChild(QStringLiteral("Junctra_CC2019_64_InDesign/JunctraPlugins.pref"));
    LookAtFile("plug-in-settings-damaged", file, findings);
    LookForCopies(QStringLiteral("A damaged file of the plug-in's settings"), QStringLiteral("prefs"), file,
                  findings);
    const QFileInfo log(folder.GetChild(QStringLiteral("Morvane.log")).GetNativePath());
    if (log.exists())
        findings.append({"log",
                         QStringLiteral("The log is \"%1\", %2 bytes.").arg(log.filePath()).arg(log.size()),
                         QString(),
                         {},
                         false});
}

void Doctor::LookAtFolders(QVector<Finding>& findings)
{
    for (const GPathName& folder : {GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences),
                                    HopboxRegistry::GetPathName().GetParent(),
                                    HopboxRegistry::GetCacheFolder(), HopboxRegistry::GetSettingsFolder()}) {
        const QString path = folder.GetNativePath();
        if (QFileInfo::exists(path) && FolderRights::MayOthersWrite(path))
            findings.append({"folder-open", QStringLiteral("Others may change the folder \"%1\".").arg(path),
                             FolderRights::GetClosingCommand(path), [path] {
                                 return MakeResult(
                                     FolderRights::CloseToOthers(path),
                                     QStringLiteral("The rights of \"%1\" can't be changed.").arg(path));
                             }});
    }
    const QString temporary = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetNativePath();
    const QFileInfo info(temporary);
    if (info.exists() && !(info.isDir() && info.isWritable()))
        findings.append(
            {"temporary-folder",
             QStringLiteral("The folder for temporary files, \"%1\", can't be used.").arg(temporary),
             QStringLiteral("look at its rights, or set TMPDIR"),
             {}});
}
