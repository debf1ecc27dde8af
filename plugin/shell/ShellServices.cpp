#include "plugin/shell/ShellServices.h"

#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "plugin/shell/PlugInFolders.h"
#include "plugin/shell/PlugInServices.h"

static void TakeDownFoundation()
{
    PlugInFolders::Forget();
    GBasicFrameworkCoreLayer::Release();
}

ShellServices::Foundation::Foundation()
{
    GBasicFrameworkCoreLayer::Initialize();
    try {
        PlugInFolders::RegisterTranslations();
        PlugInFolders::RegisterPreferences();
        PlugInFolders::InstallSettings();
    } catch (...) {
        TakeDownFoundation();
        throw;
    }
}

ShellServices::Foundation::~Foundation()
{
    TakeDownFoundation();
}

ShellServices::UserInterface::UserInterface()
{
    PlugInServices::Initialize();
}

ShellServices::UserInterface::~UserInterface()
{
    PlugInServices::Release();
}
