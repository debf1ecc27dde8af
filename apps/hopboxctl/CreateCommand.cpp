#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOptions.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

using HopboxOptions::GetAbsolute;

namespace
{
bool CheckCall(const CliCall& call)
{
    return HopboxOptions::IsUsable(QStringLiteral("A Hopbox's name"), call.GetArgument(0)) &&
           HopboxOptions::AreJobOptions(QStringLiteral("--job-options"), call.Get("job-options")) &&
           (!call.Has("icon") || HopboxOptions::IsFile(QStringLiteral("--icon"), call.Get("icon"))) &&
           (!call.Has("application") ||
            HopboxOptions::IsFile(QStringLiteral("--application"), call.Get("application")));
}

HopboxRegistryEntry MakeEntry(const CliCall& call, const GPathName& archive)
{
    const QString name = call.GetArgument(0);
    HopboxRegistryEntry entry;
    entry.applicationPath = call.Has("application") ? GetAbsolute(call.Get("application"))
                                                    : ProjectPlace::GetDefaultApplication();
    entry.contextFilePath = archive;
    entry.isPlugin = true;
    entry.pdfSettings = call.Has("pdf-settings") ? call.Get("pdf-settings") : name;
    entry.hopboxName = name;
    entry.hopboxIconPath = GetAbsolute(call.Get("icon"));
    entry.isActive = true;
    return entry;
}

int Create(const CliCall& call, const GPrefMemoryModule& settings)
{
    const QString name = call.GetArgument(0);
    HopboxRegistry registry;
    const DamageNotice::AtEnd notice(registry);
    if (!registry.FindKey(name).isEmpty())
        return HopboxOutput::FailTaken(name);
    ProjectPlace::NewFolder folder(name);
    HopboxProject project(folder.GetArchivePath());
    const GResult created = project.Create(GetAbsolute(call.Get("job-options")), settings);
    if (!created.HasSucceeded()) {
        PrintError(created.GetReason());
        return cCliFailed;
    }
    GString key;
    const bool isAdded = registry.AddFirstEntry(name, MakeEntry(call, project.GetPathName()), key);
    if (!isAdded)
        return HopboxOutput::FailTaken(name);
    folder.Keep();
    SetResult(QJsonObject{{QStringLiteral("Key"), key}});
    Print(key + QLatin1Char('\n'));
    return cCliDone;
}

int Run(const CliCall& call)
{
    const QString fault = PlugInSettings::FindFault(call.GetAll("setting"));
    if (!fault.isEmpty())
        return RefuseCall(fault);
    GPrefMemoryModule settings;
    PlugInSettings::Assign(call.GetAll("setting"), settings);
    return CheckCall(call) ? Create(call, settings) : cCliFailed;
}
}  // namespace

const Command cCreateCommand = {
    {"create",
     "make a Hopbox and print its key",
     "The job options must be such that an export can use them. The name must be free.",
     {{"NAME", "the name of the new Hopbox"}},
     {{"job-options", "FILE", "the PDF settings, a job options file", CliOption::Use::cRequired},
      {"setting", "KEY=VALUE",
       "a setting for the plug-in, as UserSettings=true; a wrong one is answered with a list of all",
       CliOption::Use::cRepeated},
      {"pdf-settings", "TEXT", "the name in the list of the export dialog; NAME without it"},
      {"icon", "FILE", "its icon"},
      {"application", "FILE",
       "the program that receives the files. Outside the cache folder it has no build number, and file "
       "packages go to "
       "it as plain paths"}},
     {{"hopboxctl create Press --job-options Press.joboptions --setting UserSettings=true",
       "Makes the Hopbox \"Press\", whose user may change the settings in the export dialog."}}},
    Run};
