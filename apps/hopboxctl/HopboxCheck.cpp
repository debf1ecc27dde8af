#include "apps/hopboxctl/HopboxCheck.h"

#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/JobOptionsCheck.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "hopbox/TemporaryFolder.h"

#include <QFile>
#include <QFileInfo>

namespace
{
using Kind = HopboxCheck::Kind;

// What is wrong where a file should be, of which the text has %1; empty when nothing is. Only what the system
// says is not there is missing.
QString FindFault(const GPathName& file, const QString& missing)
{
    const QString native = file.GetNativePath();
    if (QFileInfo(native).isFile())
        return {};
    if (file.IsEmpty() || IsFileMissing(native))
        return missing.arg(native);
    QFile opened(native);
    GString reason;
    return OpenSharedForReading(opened, cNoLargestFile, reason) == FileOpening::cOpen
               ? QString()
               : QStringLiteral("\"%1\" can't be used: %2").arg(native, reason);
}

void CheckSettings(HopboxProject& project, HopboxCheck& check)
{
    GPrefMemoryModule settings;
    const GResult read = project.ReadSettings(settings);
    if (!read.HasSucceeded()) {
        check.problems.append({Kind::cBadArchive, read.GetReason(), {}});
        return;
    }
    if (project.GetDamagePosition() >= 0)
        check.problems.append({Kind::cDamagedSettings,
                               DamageNotice::DescribeSettings(check.archive, project.GetDamagePosition(),
                                                              DamageNotice::Copy::cBeforeChange),
                               {}});
    check.damagePosition = project.GetDamagePosition();
    check.settings = PlugInSettings::GetJson(settings);
    for (const QString& key : check.settings.keys()) {
        const QString fault = PlugInSettings::FindFault(key, check.settings.value(key).toString());
        if (!fault.isEmpty())
            check.notes.append(
                {Kind::cOddSetting, QStringLiteral("The plug-in passes over a setting. ") + fault, key});
    }
}

void CheckJobOptions(HopboxProject& project, HopboxCheck& check)
{
    const TemporaryFolder folder;
    GPathName jobOptions;
    const GResult extracted = project.ExtractJobOptions(folder.GetPathName(), jobOptions);
    if (!extracted.HasSucceeded()) {
        const bool isKnown = !check.problems.isEmpty() && check.problems.last().text == extracted.GetReason();
        if (!isKnown)
            check.problems.append({Kind::cBadArchive, extracted.GetReason(), {}});
        return;
    }
    check.jobOptionsName = jobOptions.GetLeaf();
    check.jobOptionsSize = QFileInfo(jobOptions.GetNativePath()).size();
    const QString fault = JobOptionsCheck::FindFault(jobOptions.GetNativePath());
    if (!fault.isEmpty())
        check.problems.append(
            {Kind::cBadJobOptions,
             QStringLiteral("The job options \"%1\" can't be used: %2.").arg(check.jobOptionsName, fault),
             {}});
}

void CheckArchive(HopboxCheck& check)
{
    const QString fault = FindFault(check.archive, QStringLiteral("There is no project archive \"%1\"."));
    if (!fault.isEmpty()) {
        check.problems.append({Kind::cNoArchive, fault, {}});
        return;
    }
    HopboxProject project(check.archive);
    CheckSettings(project, check);
    CheckJobOptions(project, check);
}

void CheckEntry(const HopboxRegistryEntry& entry, HopboxCheck& check)
{
    const QString iconFault = FindFault(entry.hopboxIconPath, QStringLiteral("There is no icon \"%1\"."));
    if (!entry.hopboxIconPath.IsEmpty() && !iconFault.isEmpty())
        check.problems.append({Kind::cNoIcon, iconFault, {}});
    // Hopboxes of ours name an application for its build number only: a receiver that is running serves them.
    const QString fault = FindFault(entry.applicationPath, QStringLiteral("There is no application \"%1\"."));
    if (entry.applicationPath != ProjectPlace::GetDefaultApplication() && !fault.isEmpty())
        check.notes.append({Kind::cNoApplication, fault, {}});
    if (ProjectPlace::IsOfAnotherUser(check.archive))
        check.notes.append(
            {Kind::cOfAnotherUser,
             QStringLiteral("The project archive lies among another user's Hopboxes. Move a Hopbox "
                            "with \"hopboxctl export\" and \"hopboxctl import\"."),
             {}});
    if (!entry.isPlugin)
        check.notes.append(
            {Kind::cNotListed,
             QStringLiteral(
                 "The export dialog does not list the Hopbox. \"hopboxctl restore\" brings it back."),
             {}});
}
}  // namespace

HopboxCheck HopboxCheck::Make(const HopboxRegistryEntry& entry)
{
    HopboxCheck check;
    check.archive = entry.contextFilePath;
    check.build = HopboxRegistry::GetCacheEntryNumber(entry.applicationPath);
    CheckArchive(check);
    CheckEntry(entry, check);
    return check;
}
