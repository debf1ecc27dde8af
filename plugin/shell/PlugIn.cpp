#include "plugin/shell/PlugIn.h"

#include "export/dialog/RunExportDialog.h"
#include "plugin/host/HostCalls.h"
#include "plugin/shell/GIDCSPActionComponent.h"
#include "plugin/shell/ModuleResidence.h"
#include "plugin/shell/RefusalText.h"

#include <exception>

using RefusalText::Translate;

// Why the services can't be taken; empty when they can.
static GString GetRefusal(const IHostServices* services)
{
    if (HostServices::Get() != nullptr)
        return Translate("RefusalText", "The plug-in is loaded already.");
    if (services == nullptr)
        return Translate("RefusalText", "The host gave the plug-in no services.");
    if (services->GetVersion() != IHostServices::cVersion)
        return Translate("RefusalText",
                         "The plug-in needs version %1 of the host interface; this host has version %2.")
            .arg(IHostServices::cVersion)
            .arg(services->GetVersion());
    return {};
}

PlugIn::PlugIn() = default;

PlugIn::~PlugIn() = default;

int32_t PlugIn::GetInterfaceVersion() const
{
    return IHostServices::cVersion;
}

bool PlugIn::Load(IHostServices* services, PMString& error)
{
    error = PMString::Untranslated(GetRefusal(services));
    if (!error.IsEmpty())
        return false;
    KeepModuleLoaded();
    HostServices::Set(services);
    return true;
}

bool PlugIn::Unload()
{
    if (!ReleaseActionComponent())
        return false;
    HostServices::Set(nullptr);
    return true;
}

IStartupShutdownService* PlugIn::GetStartupShutdownService()
{
    return HostServices::Get() == nullptr ? nullptr : &mStartupShutdown;
}

IActionComponent* PlugIn::CreateActionComponent(PMString& error)
{
    error = PMString();
    if (HostServices::Get() == nullptr)
        error = PMString::Untranslated(Translate("RefusalText", "The plug-in is not loaded."));
    else if (mActionComponent)
        error = PMString::Untranslated(Translate("RefusalText", "The plug-in's actions are in use already."));
    if (!error.IsEmpty())
        return nullptr;
    try {
        mActionComponent = std::make_unique<GIDCSPActionComponent>(RunExportDialog);
    } catch (const std::exception& exception) {
        error = PMString::Untranslated(GString::fromUtf8(exception.what()));
    }
    return mActionComponent.get();
}

bool PlugIn::IsBusy() const
{
    return mStartupShutdown.IsBusy() || (mActionComponent && mActionComponent->IsBusy());
}

bool PlugIn::ReleaseActionComponent()
{
    if (IsBusy())
        return false;
    mActionComponent.reset();
    return true;
}
