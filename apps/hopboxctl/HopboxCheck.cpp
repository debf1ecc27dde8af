#include "apps/hopboxctl/HopboxCheck.h"

#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/JobOptionsCheck.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "hopbox/TemporaryFolder.h"

#include <QFileInfo>

namespace
{
using Kind = HopboxCheck::Kind;

bool IsThere(const GPathName& file)
{
    return QFileInfo(file.GetNativePath()).isFile();
}

void CheckSettings(HopboxProject& project, HopboxCheck& check)
{
    GPrefMemoryModule settings;
    if (!project.ReadSettings(settings)) {
        check.problems.append({Kind::cBadArchive, project.GetLastError(), {}});
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
    if (!project.ExtractJobOptions(folder.GetPathName(), jobOptions)) {
        const bool isKnown =
            !check.problems.isEmpty() && check.problems.last().text == project.GetLastError();
        if (!isKnown)
            check.problems.append({Kind::cBadArchive, project.GetLastError(), {}});
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
    if (!IsThere(check.archive)) {
        check.problems.append(
            {Kind::cNoArchive,
             QStringLiteral("There is no project archive \"%1\".").arg(check.archive.GetNativePath()),
             {}});
        return;
    }
    HopboxProject project(check.archive);
    CheckSettings(project, check);
    CheckJobOptions(project, check);
}

void CheckEntry(const HopboxRegistryEntry& entry, HopboxCheck& check)
{
    if (!entry.hopboxIconPath.IsEmpty() && !IsThere(entry.hopboxIconPath))
        check.problems.append(
            {Kind::cNoIcon,
             QStringLiteral("There is no icon \"%1\".").arg(entry.hopboxIconPath.GetNativePath()),
             {}});
    // Hopboxes of ours name an application for its build number only: a receiver that is running serves them.
    if (entry.applicationPath != ProjectPlace::GetDefaultApplication() && !IsThere(entry.applicationPath))
        check.notes.append(
            {Kind::cNoApplication,
             QStringLiteral("There is no application \"%1\".").arg(entry.applicationPath.GetNativePath()),
             {}});
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
