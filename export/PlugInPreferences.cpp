#include "export/PlugInPreferences.h"

#include "export/ResultList.h"
#include "export/SmartFileList.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/trace/GTrace.h"

#include <set>

namespace
{
constexpr int32_t cModule = GPreferences::cUserFileModule;
const GBuffer cDialogGroup = QByteArrayLiteral("CSPluginUI");
const GBuffer cLastSelection = QByteArrayLiteral("LastSelectedPDFSetting");
const GBuffer cPackageChoice = QByteArrayLiteral("IncludeFilePackageChecked");

int32_t useCount = 0;
}  // namespace

const GString PlugInPreferences::cFileName = QStringLiteral("JunctraPlugins.pref");

void PlugInPreferences::Initialize()
{
    if (useCount++ == 0) {
        SmartFileList::Sweep();
        ResultList::RemoveOld();
    }
}

void PlugInPreferences::Release()
{
    if (useCount > 0 && --useCount == 0)
        SmartFileList::Sweep();
}

GString PlugInPreferences::GetLastSelection()
{
    return GPreferences::Get(cDialogGroup, cLastSelection);
}

void PlugInPreferences::SetLastSelection(const GString& registryKey)
{
    GPreferences::Set(cModule, cDialogGroup, cLastSelection, registryKey);
}

bool PlugInPreferences::HasPackageChoice(const GString& group)
{
    return !group.isEmpty() && GPreferences::Has(group.toUtf8(), cPackageChoice);
}

bool PlugInPreferences::GetPackageChoice(const GString& group)
{
    return !group.isEmpty() && GPreferences::GetBool(group.toUtf8(), cPackageChoice);
}

void PlugInPreferences::SetPackageChoice(const GString& group, bool isWanted)
{
    if (!group.isEmpty())
        GPreferences::Set(cModule, group.toUtf8(), cPackageChoice, isWanted);
}

void PlugInPreferences::Prune(const QStringList& groups)
{
    const std::set<GString> kept(groups.begin(), groups.end());
    std::vector<GBuffer> names;
    GPreferences::GetGroupNames(cModule, names);
    for (const GBuffer& name : names) {
        if (GPreferences::Has(cModule, name, cPackageChoice) && kept.count(GString::fromUtf8(name)) == 0)
            GPreferences::Remove(cModule, name);
    }
    Flush();
}

void PlugInPreferences::Flush()
{
    try {
        if (GPrefModule* module = GPreferences::GetPrefModule(cModule))
            module->FlushPrefs();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("PlugInPreferences::Flush"), error.GetDescription());
    }
}
