#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOptions.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "foundation/cli/NearestWord.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>
#include <QVector>

#include <functional>
#include <map>
#include <variant>

namespace
{
using Change = std::function<void(HopboxRegistryEntry&)>;
using Field = std::variant<GPathName HopboxRegistryEntry::*, GString HopboxRegistryEntry::*,
                           bool HopboxRegistryEntry::*>;

const std::map<QString, Field>& GetFields()
{
    static const std::map<QString, Field> fields = {
        {HopboxRecordKey::cApplicationPath, &HopboxRegistryEntry::applicationPath},
        {HopboxRecordKey::cContextFilePath, &HopboxRegistryEntry::contextFilePath},
        {HopboxRecordKey::cPDFSettings, &HopboxRegistryEntry::pdfSettings},
        {HopboxRecordKey::cHopboxName, &HopboxRegistryEntry::hopboxName},
        {HopboxRecordKey::cHopboxIconPath, &HopboxRegistryEntry::hopboxIconPath},
        {HopboxRecordKey::cIsVirtualPrinter, &HopboxRegistryEntry::isVirtualPrinter},
        {HopboxRecordKey::cIsPlugin, &HopboxRegistryEntry::isPlugin},
        {HopboxRecordKey::cIsActive, &HopboxRegistryEntry::isActive},
    };
    return fields;
}

QStringList GetFieldNames()
{
    QStringList names;
    for (const auto& field : GetFields())
        names.append(field.first);
    return names;
}

// What is wrong with FIELD=VALUE; empty when nothing is.
QString FindFault(const QString& assignment)
{
    QString name;
    QString value;
    if (!SplitAssignment(assignment, name, value))
        return QStringLiteral("\"%1\" is no FIELD=VALUE.").arg(HopboxOutput::GetShown(assignment));
    const auto field = GetFields().find(name);
    if (field == GetFields().end())
        return QStringLiteral("There is no field \"%1\" that can be set.%2 The fields are %3.")
            .arg(HopboxOutput::GetShown(name), AskForNearestWord(name, GetFieldNames()),
                 GetFieldNames().join(QLatin1String(", ")));
    const bool isSwitch = std::holds_alternative<bool HopboxRegistryEntry::*>(field->second);
    if (isSwitch && value != GStringSupport::FromBool(GStringSupport::ToBool(value)))
        return QStringLiteral("\"%1\" takes true or false, not \"%2\".")
            .arg(name, HopboxOutput::GetShown(value));
    return {};
}

// What FIELD=VALUE does. Raises where a path is no legal one.
Change MakeChange(const QString& assignment)
{
    QString name;
    QString value;
    SplitAssignment(assignment, name, value);
    const Field field = GetFields().at(name);
    if (const auto* path = std::get_if<GPathName HopboxRegistryEntry::*>(&field))
        return [member = *path, to = HopboxOptions::GetAbsolute(value)](HopboxRegistryEntry& entry) {
            entry.*member = to;
        };
    if (const auto* text = std::get_if<GString HopboxRegistryEntry::*>(&field))
        return [member = *text, value](HopboxRegistryEntry& entry) { entry.*member = value; };
    const auto* flag = std::get_if<bool HopboxRegistryEntry::*>(&field);
    return [member = *flag, isOn = GStringSupport::ToBool(value)](HopboxRegistryEntry& entry) {
        entry.*member = isOn;
    };
}

// Puts settings and job options into the Hopbox's archive. Raises when that fails; the archive is then as it
// was.
void ChangeProject(const HopboxRegistryEntry& entry, const CliCall& call)
{
    HopboxProject project(entry.contextFilePath);
    GPrefMemoryModule settings;
    const auto check = [&project](bool isDone) {
        if (!isDone)
            throw GCustomException(GErrorCode::cFile, project.GetLastError());
    };
    check(project.ReadSettings(settings));
    PlugInSettings::Take(call.GetAll("setting"), settings);
    for (const QString& key : call.GetAll("without-setting"))
        settings.Remove(HopboxProject::GetPlugInGroup(), key.toUtf8());
    check(call.Has("job-options")
              ? project.Replace(HopboxOptions::GetAbsolute(call.Get("job-options")), settings)
              : project.WriteSettings(settings));
    if (project.GetDamagePosition() < 0)
        return;
    constexpr auto cKept = DamageNotice::Copy::cKept;
    PrintError(HopboxOutput::GetShown(
        DamageNotice::DescribeSettings(entry.contextFilePath, project.GetDamagePosition(), cKept)));
    DamageNotice::SetSettings(entry.contextFilePath, project.GetDamagePosition(), cKept);
}

QString FindFault(const CliCall& call)
{
    for (const QString& assignment : call.GetArguments().mid(1)) {
        const QString fault = FindFault(assignment);
        if (!fault.isEmpty())
            return fault;
    }
    const bool changesProject = call.Has("job-options") || call.Has("setting") || call.Has("without-setting");
    if (!changesProject && call.GetArguments().size() == 1)
        return QStringLiteral("There is nothing to set: FIELD=VALUE, --setting or --job-options is missing.");
    return PlugInSettings::FindFault(call.GetAll("setting"));
}

int Run(const CliCall& call)
{
    const QString fault = FindFault(call);
    if (!fault.isEmpty())
        return RefuseCall(fault);
    if (call.Has("job-options") &&
        !HopboxOptions::AreJobOptions(QStringLiteral("--job-options"), call.Get("job-options")))
        return cCliFailed;
    QVector<Change> changes;
    for (const QString& assignment : call.GetArguments().mid(1))
        changes.append(MakeChange(assignment));
    const QString name = call.GetArgument(0);
    HopboxRegistry registry;
    const QString key = registry.FindKey(name);
    const bool isChanged = registry.ChangeEntry(name, [&](HopboxRegistryEntry& entry) {
        for (const Change& change : changes)
            change(entry);
        if (call.Has("job-options") || call.Has("setting") || call.Has("without-setting"))
            ChangeProject(entry, call);
    });
    DamageNotice::Tell(registry);
    if (isChanged) {
        SetResult(QJsonObject{{QStringLiteral("Key"), key}});
        return cCliDone;
    }
    QString unused;
    HopboxOutput::FindOrFail(registry, name, unused);
    return cCliFailed;
}
}  // namespace

const Command cSetCommand = {
    {"set",
     "change a Hopbox",
     "All changes are made in one step, or none.\n\n"
     "The fields ApplicationPath, ContextFilePath, HopboxIconPath take a path, PDFSettings and HopboxName a "
     "text, "
     "IsVirtualPrinter, IsPlugin and IsActive take true or false.",
     {{"NAME", "the Hopbox"},
      {"FIELD=VALUE", "a field of its registry entry, and what it is from now on", CliArgument::Count::cAny}},
     {{"job-options", "FILE", "other PDF settings"},
      {"setting", "KEY=VALUE", "a setting for the plug-in; the others stay", CliOption::Use::cRepeated},
      {"without-setting", "KEY", "take a setting for the plug-in out: the job options decide",
       CliOption::Use::cRepeated}},
     {{"hopboxctl set Press --job-options Coated.joboptions --setting MarkOffset=6",
       "Exports to \"Press\" use other job options and another offset of the marks from now on."},
      {"hopboxctl set Press 'PDFSettings=Magazine, coated'",
       "The export dialog lists the Hopbox \"Press\" as \"Magazine, coated\"."}}},
    Run};
