#pragma once

#include "plugin/boundary/HostTable.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/host/IPlugIn.h"

#include <memory>

// The plug-in of a module, in the classes that an adaptor of this repository knows, over the module's table.
// The module, and this object, stay until Unload was not refused. For the host's main thread.
class ModulePlugIn final : public IPlugIn,
                           private IActionComponent,
                           private IStartupShutdownService,
                           private WBaseResourceAccess
{
public:
    // The entry is the module's HOPBOX_ENTRY_NAME; null, and a module of another version, are refused by
    // Load.
    explicit ModulePlugIn(hopbox_entry_function entry);
    ModulePlugIn(const ModulePlugIn&) = delete;
    ModulePlugIn& operator=(const ModulePlugIn&) = delete;

    // Whether the module serves this version of the boundary.
    bool IsServed() const { return mTable.version == HOPBOX_VERSION; }

    // Handles of the host that the module has not given back.
    size_t GetHandleCount() const { return mHost ? mHost->GetHandleCount() : 0; }

    int32_t GetInterfaceVersion() const override { return IHostServices::cVersion; }
    [[nodiscard]] bool Load(IHostServices* services, PMString& error) override;
    [[nodiscard]] bool Unload() override;
    IStartupShutdownService* GetStartupShutdownService() override;
    IActionComponent* CreateActionComponent(PMString& error) override;
    [[nodiscard]] bool ReleaseActionComponent() override;
    const WBaseResourceAccess& GetResourceAccess() const override { return *this; }

private:
    void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) override;
    void UpdateActionStates(IActiveContext* context, IActionStateList& states) override;
    ExportResult Export(ActionID action, const ExportChoices& choices, PMString& error) override;
    void Startup() override;
    void Shutdown() override;
    [[nodiscard]] bool GetResourceFile(ResourceFileInfo& info) const override;

    template <class... Parameters, class... Arguments>
    int32_t Call(int32_t (*hopbox_plugin_table::*operation)(Parameters...), Arguments... arguments) const
    {
        return mTable.*operation == nullptr ? int32_t(HOPBOX_UNSUPPORTED) : (mTable.*operation)(arguments...);
    }

    hopbox_plugin_table mTable = {};
    std::unique_ptr<HostTable> mHost;
};
