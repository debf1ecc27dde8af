#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/JobOptionsCheck.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "hopbox/TemporaryFolder.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace
{
// What was found out about a Hopbox.
struct Findings
{
    GPathName archive;
    QJsonObject settings;
    QString jobOptionsName;
    qint64 jobOptionsSize = 0;
    int build = 0;
    QStringList problems;  // the Hopbox can't be used
    QStringList notes;     // it can
};

bool IsThere(const GPathName& file)
{
    return QFileInfo(file.GetNativePath()).isFile();
}

void CheckSettings(HopboxProject& project, Findings& findings)
{
    GPrefMemoryModule settings;
    if (!project.ReadSettings(settings)) {
        findings.problems.append(project.GetLastError());
        return;
    }
    findings.settings = PlugInSettings::GetJson(settings);
    for (const QString& fault : PlugInSettings::FindFaults(settings))
        findings.notes.append(QStringLiteral("The plug-in passes over a setting. ") + fault);
}

void CheckJobOptions(HopboxProject& project, Findings& findings)
{
    const TemporaryFolder folder;
    GPathName jobOptions;
    if (!project.ExtractJobOptions(folder.GetPathName(), jobOptions)) {
        if (!findings.problems.contains(project.GetLastError()))
            findings.problems.append(project.GetLastError());
        return;
    }
    findings.jobOptionsName = jobOptions.GetLeaf();
    findings.jobOptionsSize = QFileInfo(jobOptions.GetNativePath()).size();
    const QString fault = JobOptionsCheck::FindFault(jobOptions.GetNativePath());
    if (!fault.isEmpty())
        findings.problems.append(
            QStringLiteral("The job options \"%1\" can't be used: %2.").arg(findings.jobOptionsName, fault));
}

void CheckArchive(Findings& findings)
{
    if (!IsThere(findings.archive)) {
        findings.problems.append(
            QStringLiteral("There is no project archive \"%1\".").arg(findings.archive.GetNativePath()));
        return;
    }
    HopboxProject project(findings.archive);
    CheckSettings(project, findings);
    CheckJobOptions(project, findings);
}

Findings Check(const HopboxRegistryEntry& entry)
{
    Findings findings;
    findings.archive = entry.contextFilePath;
    findings.build = HopboxRegistry::GetCacheEntryNumber(entry.applicationPath);
    CheckArchive(findings);
    if (!entry.hopboxIconPath.IsEmpty() && !IsThere(entry.hopboxIconPath)) {
        findings.problems.append(
            QStringLiteral("There is no icon \"%1\".").arg(entry.hopboxIconPath.GetNativePath()));
    }
    // Hopboxes of ours name an application for its build number only: a receiver that is running serves them.
    if (entry.applicationPath != ProjectPlace::GetDefaultApplication() && !IsThere(entry.applicationPath)) {
        findings.notes.append(
            QStringLiteral("There is no application \"%1\".").arg(entry.applicationPath.GetNativePath()));
    }
    if (ProjectPlace::IsOfAnotherUser(findings.archive)) {
        findings.notes.append(
            QStringLiteral("The project archive lies among another user's Hopboxes. Move a Hopbox with "
                           "\"hopboxctl export\" and \"hopboxctl import\"."));
    }
    if (!entry.isPlugin)
        findings.notes.append(QStringLiteral(
            "The export dialog does not list the Hopbox. \"hopboxctl restore\" brings it back."));
    return findings;
}

QJsonObject GetJson(const QString& key, const Findings& findings)
{
    QJsonObject jobOptions;
    if (!findings.jobOptionsName.isEmpty()) {
        jobOptions.insert(QStringLiteral("Name"), findings.jobOptionsName);
        jobOptions.insert(QStringLiteral("Size"), findings.jobOptionsSize);
    }
    return {{QStringLiteral("Key"), key},
            {QStringLiteral("Archive"), findings.archive.GetNativePath()},
            {QStringLiteral("Settings"), findings.settings},
            {QStringLiteral("JobOptions"), jobOptions},
            {QStringLiteral("Build"), findings.build},
            {QStringLiteral("Notes"), QJsonArray::fromStringList(findings.notes)}};
}

void PrintAsText(const Findings& findings)
{
    QVector<QStringList> rows = {{QStringLiteral("Archive"), findings.archive.GetNativePath()}};
    for (auto setting = findings.settings.begin(); setting != findings.settings.end(); ++setting)
        rows.append(
            {QStringLiteral("Setting"), setting.key() + QLatin1Char('=') + setting.value().toString()});
    if (!findings.jobOptionsName.isEmpty()) {
        rows.append(
            {QStringLiteral("Job options"),
             QStringLiteral("%1, %2 bytes").arg(findings.jobOptionsName).arg(findings.jobOptionsSize)});
    }
    rows.append({QStringLiteral("Build"), QString::number(findings.build)});
    for (const QString& note : findings.notes)
        rows.append({QStringLiteral("Note"), note});
    HopboxOutput::PrintTable(rows);
}

int Run(const CliCall& call)
{
    const HopboxRegistry registry;
    const int status = DamageNotice::Tell(registry);
    QString key;
    const std::optional<HopboxRecord> record = HopboxOutput::FindOrFail(registry, call.GetArgument(0), key);
    if (!record)
        return cCliFailed;
    const Findings findings = Check(record->entry);
    SetResult(GetJson(key, findings));
    PrintAsText(findings);
    for (const QString& problem : findings.problems)
        PrintError(HopboxOutput::GetShown(problem));
    return findings.problems.isEmpty() ? status : cCliFailed;
}
}  // namespace

const Command cCheckCommand = {{"check",
                                "look whether an export to a Hopbox can work",
                                "It opens the project archive, and reads the settings and the job options. "
                                "Errors set the exit status to 1; notes "
                                "are only information.",
                                {{"NAME", "the Hopbox"}},
                                {},
                                {{"hopboxctl check Press", "Looks at the Hopbox \"Press\"."}}},
                               Run};
