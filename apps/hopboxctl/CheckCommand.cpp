#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCheck.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>
#include <QJsonObject>

namespace
{
QJsonObject GetJson(const QString& key, const HopboxCheck& check)
{
    QJsonObject jobOptions;
    if (!check.jobOptionsName.isEmpty()) {
        jobOptions.insert(QStringLiteral("Name"), check.jobOptionsName);
        jobOptions.insert(QStringLiteral("Size"), check.jobOptionsSize);
    }
    QJsonArray notes;
    for (const HopboxCheck::Finding& note : check.notes)
        notes.append(note.text);
    return {{QStringLiteral("Key"), key},
            {QStringLiteral("Archive"), check.archive.GetNativePath()},
            {QStringLiteral("Settings"), check.settings},
            {QStringLiteral("JobOptions"), jobOptions},
            {QStringLiteral("Build"), check.build},
            {QStringLiteral("Notes"), notes}};
}

void PrintAsText(const HopboxCheck& check)
{
    QVector<QStringList> rows = {{QStringLiteral("Archive"), check.archive.GetNativePath()}};
    for (auto setting = check.settings.begin(); setting != check.settings.end(); ++setting)
        rows.append(
            {QStringLiteral("Setting"), setting.key() + QLatin1Char('=') + setting.value().toString()});
    if (!check.jobOptionsName.isEmpty()) {
        rows.append({QStringLiteral("Job options"),
                     QStringLiteral("%1, %2 bytes").arg(check.jobOptionsName).arg(check.jobOptionsSize)});
    }
    rows.append({QStringLiteral("Build"), QString::number(check.build)});
    for (const HopboxCheck::Finding& note : check.notes)
        rows.append({QStringLiteral("Note"), note.text});
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
    const HopboxCheck check = HopboxCheck::Make(record->entry);
    if (check.damagePosition >= 0)
        DamageNotice::SetSettings(check.archive, check.damagePosition, DamageNotice::Copy::cBeforeChange);
    SetResult(GetJson(key, check));
    PrintAsText(check);
    for (const HopboxCheck::Finding& problem : check.problems)
        PrintError(HopboxOutput::GetShown(problem.text));
    return check.problems.isEmpty() ? status : cCliFailed;
}
}  // namespace

const Command cCheckCommand = {
    {"check",
     "look whether an export to a Hopbox can work",
     "It opens the project archive, and reads the settings and the job options. Errors set the exit status "
     "to 1; notes are only information.",
     {{"NAME", "the Hopbox"}},
     {},
     {{"hopboxctl check Press", "Looks at the Hopbox \"Press\"."}}},
    Run};
