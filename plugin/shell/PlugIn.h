#pragma once

#include "plugin/host/IPlugIn.h"
#include "plugin/shell/GIDCSPStartupShutdown.h"
#include "plugin/shell/WResourceAccess.h"

#include <memory>

class GIDCSPActionComponent;

// The plug-in, as the one object that its module exports. See IPlugIn.
class PlugIn final : public IPlugIn
{
public:
    PlugIn();
    ~PlugIn();
    PlugIn(const PlugIn&) = delete;
    PlugIn& operator=(const PlugIn&) = delete;

    int32_t GetInterfaceVersion() const override;
    [[nodiscard]] bool Load(IHostServices* services, PMString& error) override;
    [[nodiscard]] bool Unload() override;
    IStartupShutdownService* GetStartupShutdownService() override;
    IActionComponent* CreateActionComponent(PMString& error) override;
    [[nodiscard]] bool ReleaseActionComponent() override;
    const WBaseResourceAccess& GetResourceAccess() const override { return mResourceAccess; }

private:
    // Whether the plug-in is inside a call from the host that needs the services.
    bool IsBusy() const;

    GIDCSPStartupShutdown mStartupShutdown;
    WResourceAccess mResourceAccess;
    std::unique_ptr<GIDCSPActionComponent> mActionComponent;
};
