#include "plugin/shell/PlugInFolders.h"

#include "export/PlugInPrefModule.h"
#include "export/PlugInPreferences.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"

void PlugInFolders::RegisterTranslations()
{
    const GPathName moduleFolder = GFileSystemBase::GetDllPath().GetParent();
    GFileSystemBase::RegisterSpecialPath(GSpecialPath::cTranslations,
                                         moduleFolder.GetChild(QStringLiteral("Resources/Strings")));
}

void PlugInFolders::RegisterPreferences()
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
                                 .GetChild(QStringLiteral("Junctra_CC2019_64_InDesign"));
    try {
        GFileSystemBase::CreateFolder(folder);
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("PlugInFolders::RegisterPreferences"), error.GetDescription());
    }
    GFileSystemBase::RegisterSpecialPath(GSpecialPath::cPlugInPreferences, folder);
}

void PlugInFolders::InstallSettings()
{
    const GPathName file = GFileSystemBase::GetSpecialPath(GSpecialPath::cPlugInPreferences)
                               .GetChild(PlugInPreferences::cFileName);
    GPreferences::SetPrefModule(GPreferences::cUserFileModule, std::make_unique<PlugInPrefModule>(file));
}

GPathName PlugInFolders::FindTranslation()
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cTranslations);
    GStringPoolSupport::ReadStringFiles(folder, QStringLiteral("CSP"), 0, 0, 0);
    const GString name = QStringLiteral("Plugin_%1.qm").arg(GBasicFrameworkCoreLayer::GetLanguage());
    // The setting names a language, not a path.
    return GPathName(name).GetLeaf() == name ? folder.GetChild(name) : GPathName();
}

void PlugInFolders::Forget()
{
    for (const int32_t number : {GSpecialPath::cPlugInPreferences, GSpecialPath::cTranslations})
        GFileSystemBase::RegisterSpecialPath(number, GPathName());
}
