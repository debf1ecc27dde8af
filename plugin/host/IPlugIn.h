#pragma once

#include "plugin/host/IDFile.h"

class IActionComponent;
class IHostServices;
class IStartupShutdownService;
class WBaseResourceAccess;

// The plug-in as its host sees it. A host that shares the compiler finds the entry GetPlugIn and asks
// the object that it gives. Everything is called on the host's main thread.
//
// The order: Load, CreateActionComponent, the startup service's Startup; then choices and states of menus;
// then the startup service's Shutdown, the component's end, Unload.
//
// While an action runs, which includes the time that its dialog is open, Unload and ReleaseActionComponent
// are refused: the action works with the services and the component until it ends. They are also
// refused while the plug-in calls the host during UpdateActionStates or Startup. A host that wants to stop
// then lets the call return first.
class IPlugIn
{
public:
    // The version of the host interface that the plug-in was built with (IHostServices::cVersion). The first
    // function of the class in every version; a host of another version calls nothing else.
    virtual int32_t GetInterfaceVersion() const = 0;

    // Gives the plug-in the services of its host, which stay until Unload. False, with the reason for the
    // user in `error`, when they are none or of another version, or when the plug-in has services already;
    // nothing has changed then.
    [[nodiscard]] virtual bool Load(IHostServices* services, PMString& error) = 0;

    // Takes the services back, and with them an action component that is still there. The plug-in can be
    // loaded again. Without services, does nothing. False, and nothing has changed, while an action or
    // another of the host's calls runs: the services must stay then.
    [[nodiscard]] virtual bool Unload() = 0;

    // The service that the host starts once its menus are there. The plug-in's own; null without services.
    virtual IStartupShutdownService* GetStartupShutdownService() = 0;

    // The component that owns the plug-in's actions, class PlugInID::cActionComponent. One exists at a time;
    // it belongs to the plug-in and is ended by ReleaseActionComponent or Unload. Null, with the reason in
    // `error`, without services or when the plug-in's own services can't be brought up.
    virtual IActionComponent* CreateActionComponent(PMString& error) = 0;

    // Ends the component, if there is one. False, and nothing has changed, where Unload gives that.
    [[nodiscard]] virtual bool ReleaseActionComponent() = 0;

    virtual const WBaseResourceAccess& GetResourceAccess() const = 0;

protected:
    ~IPlugIn() = default;
};

// The name and the type of that entry, in the module and in the library plugin_shell. It gives the same
// object each time. Hosts of any other compiler or language: plugin/boundary/hopbox_host.h.
constexpr const char* cGetPlugInName = "GetPlugIn";
using GetPlugInFunction = IPlugIn* (*)();

// Tells the plug-in that the host's session begins and ends.
class IStartupShutdownService
{
public:
    virtual void Startup() = 0;
    virtual void Shutdown() = 0;

protected:
    ~IStartupShutdownService() = default;
};

// Where a plug-in's own resources are.
struct ResourceFileInfo
{
    IDFile file;    // the file, or the folder, that holds them
    PMString name;  // the plug-in's name in the host's list of plug-ins
};

class WBaseResourceAccess
{
public:
    // False where the place can't be told; `info` is left alone then.
    [[nodiscard]] virtual bool GetResourceFile(ResourceFileInfo& info) const = 0;

protected:
    ~WBaseResourceAccess() = default;
};
