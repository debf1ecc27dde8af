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
#include <memory>
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
    static_cast<void>(SplitAssignment(assignment, name, value));  // was looked at with the call
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

bool ChangesProject(const CliCall& call)
{
    return call.Has("job-options") || call.Has("setting") || call.Has("without-setting");
}

// Makes the Hopbox's new archive, with the settings and job options, beside the old one. Raises when that
// fails; nothing is left of it then.
void PrepareProject(HopboxProject& project, const CliCall& call)
{
    GPrefMemoryModule settings;
    const auto check = [](const GResult& result) {
        if (!result.HasSucceeded())
            throw GCustomException(GErrorCode::cFile, result.GetReason());
    };
    check(project.ReadSettings(settings));
    PlugInSettings::Assign(call.GetAll("setting"), settings);
    for (const QString& key : call.GetAll("without-setting"))
        settings.Remove(HopboxProject::GetPlugInGroup(), key.toUtf8());
    const bool withJobOptions = call.Has("job-options");
    check(project.Prepare(withJobOptions ? HopboxOptions::GetAbsolute(call.Get("job-options")) : GPathName(),
                          settings));
}

void TellDamage(const HopboxProject& project)
{
    if (project.GetDamagePosition() < 0)
        return;
    constexpr auto cKept = DamageNotice::Copy::cKept;
    const GPathName& archive = project.GetPathName();
    PrintError(
        HopboxOutput::GetShown(DamageNotice::DescribeSettings(archive, project.GetDamagePosition(), cKept)));
    DamageNotice::SetSettings(archive, project.GetDamagePosition(), cKept);
}

// A change of a Hopbox: of its fields in the registry, and of its archive.
class HopboxChange
{
public:
    HopboxChange(const CliCall& call, HopboxRegistry& registry, const QString& name)
        : mCall(call), mRegistry(registry), mName(name)
    {
    }

    // The registry is written with the new archive ready: what remains is one step.
    bool Make(const QVector<Change>& changes)
    {
        const bool isFound = mRegistry.ChangeEntry(mName, [&](HopboxRegistryEntry& entry) {
            mOld = entry;
            for (const Change& change : changes)
                change(entry);
            mNew = entry;
            if (!ChangesProject(mCall))
                return;
            mProject = std::make_unique<HopboxProject>(entry.contextFilePath);
            PrepareProject(*mProject, mCall);
        });
        if (mProject != nullptr)
            PutArchiveInPlace();
        return isFound;
    }

private:
    void PutArchiveInPlace()
    {
        const GResult result = mProject->PutInPlace();
        if (result.HasSucceeded())
            return TellDamage(*mProject);
        TakeBack();
        throw GCustomException(GErrorCode::cFile, result.GetReason());
    }

    // Unless somebody else has changed the Hopbox meanwhile.
    void TakeBack()
    {
        try {
            // One that is gone meanwhile needs nothing.
            static_cast<void>(mRegistry.ChangeEntry(mName, [this](HopboxRegistryEntry& entry) {
                if (entry == mNew)
                    entry = mOld;
            }));
        } catch (const GException& error) {
            PrintError(HopboxOutput::GetShown(
                QStringLiteral(
                    "The fields have the new values, the project archive \"%1\" is the old one: %2")
                    .arg(mProject->GetPathName().GetNativePath(), error.GetDescription())));
        }
    }

    const CliCall& mCall;
    HopboxRegistry& mRegistry;
    const QString mName;
    HopboxRegistryEntry mOld, mNew;
    std::unique_ptr<HopboxProject> mProject;
};

QString FindFault(const CliCall& call)
{
    for (const QString& assignment : call.GetArguments().mid(1)) {
        const QString fault = FindFault(assignment);
        if (!fault.isEmpty())
            return fault;
    }
    if (!ChangesProject(call) && call.GetArguments().size() == 1)
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
    const DamageNotice::AtEnd notice(registry);
    const QString key = registry.FindKey(name);
    const bool isChanged = HopboxChange(call, registry, name).Make(changes);
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
     "All changes are made, or none. After a kill just between the two files the fields are new and the "
     "project archive is old: give the call again.\n\n"
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
