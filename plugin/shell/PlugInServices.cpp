#include "plugin/shell/PlugInServices.h"

#include "export/PlugInPreferences.h"
#include "foundation/core/GPathName.h"
#include "foundation/core/GUseCount.h"
#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"
#include "plugin/messages/GCSPUUserMessage.h"
#include "plugin/messages/MessageTable.h"
#include "widgets/GCUSTranslation.h"

namespace
{
GUseCount uses;

// A language without files keeps the English texts.
void LoadTranslations()
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cTranslations);
    GStringPoolSupport::ReadStringFiles(folder, QStringLiteral("CSP"), 0, 0, 0);
    GBasicFrameworkCoreLayer::ApplySettings();
    const GString language = GBasicFrameworkCoreLayer::GetLanguage();
    // The setting names a language, not a path.
    const GString name = QStringLiteral("Plugin_%1.qm").arg(language);
    const GPathName relative(name);
    if (relative.GetLeaf() == name && !GCUSTranslation::Load(folder.GetChild(name)))
        GTrace::Debug(QStringLiteral("PlugInServices::LoadTranslations"),
                      QStringLiteral("No widget translations for %1").arg(language));
}

void BringUp()
{
    RegisterPlugInMessages();
    LoadTranslations();
    GUserMessage::SetInstance(std::make_unique<GCSPUUserMessage>());
    PlugInPreferences::Initialize();
}

void TakeDown()
{
    PlugInPreferences::Release();
    GUserMessage::SetInstance(nullptr);
    GCUSTranslation::Unload();
    GStringPoolSupport::ForgetStringFiles();
}
}  // namespace

void PlugInServices::Initialize()
{
    uses.Add(BringUp, TakeDown);
}

void PlugInServices::Release() noexcept
{
    if (!uses.Remove(TakeDown))
        GTrace::Assert(QStringLiteral("PlugInServices::Release"),
                       QStringLiteral("Released more often than initialised."));
}
