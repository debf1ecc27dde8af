#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/Doctor.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/core/GException.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using Doctor::Finding;

namespace
{
// Looks at one thing; what keeps it from being looked at is a finding, too, once.
template <typename Look>
void Try(QVector<Finding>& findings, const Look& look)
{
    try {
        look();
    } catch (const GException& error) {
        const auto isIt = [&](const Finding& found) { return found.text == error.GetDescription(); };
        if (std::none_of(findings.cbegin(), findings.cend(), isIt))
            findings.append(
                {"not-looked-at", error.GetDescription(), QStringLiteral("mend this and look again"), {}});
    }
}

QVector<Finding> LookAtEverything()
{
    QVector<Finding> findings;
    Try(findings, [] { DamageNotice::Tell(HopboxRegistry()); });
    Try(findings, [&] { Doctor::LookAtFolders(findings); });
    Try(findings, [&] { Doctor::LookAtRegistry(HopboxRegistry(), findings); });
    Try(findings, [&] { Doctor::LookAtHopboxes(HopboxRegistry(), findings); });
    Try(findings, [&] { Doctor::LookAtProjectFolders(HopboxRegistry(), findings); });
    Try(findings, [&] { Doctor::LookAtPlugInSettings(findings); });
    Try(findings, [&] { Doctor::LookAtJobOptions(HopboxRegistry(), findings); });
    Try(findings, [&] { Doctor::LookAtWorkFolder(findings); });
    Try(findings, [&] { Doctor::LookAtChannel(findings); });
    Try(findings, [&] { Doctor::LookAtReceivers(HopboxRegistry(), findings); });
    Try(findings, [&] { Doctor::LookAtStarts(HopboxRegistry(), findings); });
    return findings;
}

bool Mend(const Finding& finding)
{
    if (!finding.fix)
        return false;
    const GResult result = GResult::Catch(finding.fix);
    if (!result.HasSucceeded())
        PrintError(HopboxOutput::GetShown(result.GetReason()));
    return result.HasSucceeded();
}

void PrintFinding(const Finding& finding, bool isMended)
{
    const QString mark = isMended            ? QStringLiteral("mended")
                         : finding.isProblem ? QStringLiteral("problem")
                                             : QStringLiteral("note");
    Print(QStringLiteral("%1: %2\n").arg(mark, HopboxOutput::GetShown(finding.text)));
    if (!isMended && !finding.mend.isEmpty())
        Print(QStringLiteral("    %1\n").arg(HopboxOutput::GetShown(finding.mend)));
}

int Run(const CliCall& call)
{
    QJsonArray json;
    int open = 0;
    for (const Finding& finding : LookAtEverything()) {
        const bool isMended = call.Has("fix") && Mend(finding);
        open += finding.isProblem && !isMended ? 1 : 0;
        PrintFinding(finding, isMended);
        json.append(QJsonObject{{QStringLiteral("kind"), QLatin1String(finding.kind)},
                                {QStringLiteral("text"), finding.text},
                                {QStringLiteral("mend"), finding.mend},
                                {QStringLiteral("isProblem"), finding.isProblem},
                                {QStringLiteral("canBeFixed"), static_cast<bool>(finding.fix)},
                                {QStringLiteral("isMended"), isMended}});
    }
    SetResult(json);
    if (json.isEmpty())
        Print(QStringLiteral("All is well.\n"));
    return open == 0 ? cCliDone : cCliFailed;
}
}  // namespace

const Command cDoctorCommand = {
    {"doctor",
     "look for everything that may keep exports from working",
     "It looks at the registry, the Hopboxes, their project folders and job "
     "options, the plug-in's settings, the "
     "rights of folders, what exports left, the receivers, their inboxes and queues. "
     "Below each problem stands the command "
     "that mends it. Problems set the exit status to 1.",
     {},
     {{"fix", "", "mend what can be mended without losing anything"}},
     {{"hopboxctl doctor", "Looks at everything and changes nothing."},
      {"hopboxctl doctor --fix", "Mends what is safe to mend."}}},
    Run};
