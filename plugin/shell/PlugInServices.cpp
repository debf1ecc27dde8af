#include "plugin/shell/PlugInServices.h"

#include "export/PlugInPreferences.h"
#include "foundation/core/GUseCount.h"
#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/trace/GTrace.h"
#include "plugin/messages/GCSPUUserMessage.h"
#include "plugin/messages/MessageTable.h"
#include "plugin/shell/PlugInFolders.h"
#include "widgets/GCUSTranslation.h"

namespace
{
GUseCount uses;

// A language without files keeps the English texts.
void LoadTranslations()
{
    const GPathName file = PlugInFolders::FindTranslation();
    GBasicFrameworkCoreLayer::ApplySettings();
    if (!file.IsEmpty() && !GCUSTranslation::Load(file))
        GTrace::Debug(QStringLiteral("PlugInServices::LoadTranslations"),
                      QStringLiteral("There is no %1.").arg(file.GetNativePath()));
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
