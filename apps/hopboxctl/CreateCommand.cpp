#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/JobOptionsCheck.h"
#include "apps/hopboxctl/PlugInSettings.h"
#include "apps/hopboxctl/ProjectPlace.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

namespace
{
bool HasLineBreak(const QString& text)
{
    return text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
}

// The settings texts turn a line break into CR LF, so what holds one would not be found again.
bool IsUsable(const QString& what, const QString& text)
{
    if (!HasLineBreak(text))
        return true;
    PrintError(QStringLiteral("%1 may hold no line break: \"%2\".").arg(what, HopboxOutput::GetShown(text)));
    return false;
}

// Whether the path that the user gave names a file.
bool IsFile(const QString& what, const QString& path)
{
    if (!IsUsable(what, path))
        return false;
    const QFileInfo file(path);
    if (file.isFile() && file.isReadable())
        return true;
    PrintError(QStringLiteral("%1: there is no file \"%2\" that can be read.")
                   .arg(what, HopboxOutput::GetShown(path)));
    return false;
}

GPathName GetAbsolute(const QString& path)
{
    return path.isEmpty() ? GPathName() : GPathName(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
}

bool AreJobOptions(const QString& path)
{
    if (!IsFile(QStringLiteral("--job-options"), path))
        return false;
    const QString fault = JobOptionsCheck::FindFault(path);
    if (fault.isEmpty())
        return true;
    PrintError(QStringLiteral("--job-options: \"%1\" can't be used: %2.")
                   .arg(HopboxOutput::GetShown(path), HopboxOutput::GetShown(fault)));
    return false;
}

bool IsFree(const HopboxRegistry& registry, const QString& name)
{
    if (registry.FindKey(name).isEmpty())
        return true;
    PrintError(QStringLiteral("A Hopbox is registered as \"%1\" already.").arg(HopboxOutput::GetShown(name)));
    return false;
}

bool CheckCall(const Arguments& arguments, const QString& name)
{
    return IsUsable(QStringLiteral("A Hopbox's name"), name) && AreJobOptions(arguments.Get("job-options")) &&
           (!arguments.Has("icon") || IsFile(QStringLiteral("--icon"), arguments.Get("icon"))) &&
           (!arguments.Has("application") ||
            IsFile(QStringLiteral("--application"), arguments.Get("application")));
}

HopboxRegistryEntry MakeEntry(const Arguments& arguments, const QString& name, const GPathName& archive)
{
    HopboxRegistryEntry entry;
    entry.applicationPath = arguments.Has("application") ? GetAbsolute(arguments.Get("application"))
                                                         : ProjectPlace::GetDefaultApplication();
    entry.contextFilePath = archive;
    entry.isPlugin = true;
    entry.pdfSettings = arguments.Has("pdf-settings") ? arguments.Get("pdf-settings") : name;
    entry.hopboxName = name;
    entry.hopboxIconPath = GetAbsolute(arguments.Get("icon"));
    entry.isActive = true;
    return entry;
}

void PrintKey(const HopboxRegistry& registry, const QString& key, bool isJson)
{
    QJsonObject json{{QStringLiteral("Key"), key}};
    DamageNotice::AddTo(json, registry);
    if (isJson)
        HopboxOutput::PrintJson(json);
    else
        Print(key + QLatin1Char('\n'));
}

int Create(const Arguments& arguments, const QString& name, const GPrefMemoryModule& settings)
{
    HopboxRegistry registry;
    if (!IsFree(registry, name))
        return cExitFailed;
    ProjectPlace::NewFolder folder(name);
    HopboxProject project(folder.GetArchivePath());
    if (!project.Create(GetAbsolute(arguments.Get("job-options")), settings)) {
        PrintError(project.GetLastError());
        return cExitFailed;
    }
    GString key;
    registry.AddEntry(name, MakeEntry(arguments, name, project.GetPathName()), &key);
    folder.Keep();
    DamageNotice::Tell(registry);
    PrintKey(registry, key, arguments.Has("json"));
    return cExitDone;
}

int Run(const QStringList& texts)
{
    const Arguments arguments(
        texts, {QStringLiteral("json")},
        {QStringLiteral("job-options"), QStringLiteral("pdf-settings"), QStringLiteral("setting"),
         QStringLiteral("icon"), QStringLiteral("application")});
    if (!arguments.AreValid() || arguments.GetRest().size() != 1 || arguments.GetRest().first().isEmpty() ||
        !arguments.Has("job-options"))
        return cExitUsage;
    const QString fault = PlugInSettings::FindFault(arguments.GetAll("setting"));
    if (!fault.isEmpty()) {
        PrintError(fault);
        return cExitUsage;
    }
    GPrefMemoryModule settings;
    PlugInSettings::Take(arguments.GetAll("setting"), settings);
    const QString name = arguments.GetRest().first();
    return CheckCall(arguments, name) ? Create(arguments, name, settings) : cExitFailed;
}
}  // namespace

const Command cCreateCommand = {
    "create",
    "create NAME --job-options FILE [--pdf-settings TEXT] [--setting KEY=VALUE]... [--icon FILE]"
    " [--application PATH] [--json]",
    Run};
