#pragma once

#include "plugin/host/IDFile.h"

class IActionComponent;
class IHostServices;
class IStartupShutdownService;
class WBaseResourceAccess;

// The plug-in as its host sees it. A host that shares the compiler finds the entry GetPlugIn and asks
// the object that it gives. Everything is called on the host's main thread.
//
// The order: Load, CreateActionComponent and the startup service's Startup; then menu choices and menu
// states; then the startup service's Shutdown, ReleaseActionComponent and Unload.
//
// While an action runs or its dialog is open, Unload and ReleaseActionComponent are refused: the action uses
// the services and the component until it ends. They are also refused while the plug-in calls the host during
// UpdateActionStates or Startup. A host that wants to stop must first let that call return.
class IPlugIn
{
public:
    // The version of the host interface that the plug-in was built with (IHostServices::cVersion). It is the
    // first function of the class in every version; a host of another version must call nothing else.
    virtual int32_t GetInterfaceVersion() const = 0;

    // Gives the plug-in the services of its host, which must stay until Unload. False, with the reason for
    // the user in `error`, when there are no services, when they have another version, or when the plug-in
    // has services already. Nothing has changed then.
    [[nodiscard]] virtual bool Load(IHostServices* services, PMString& error) = 0;

    // Takes the services back, and ends an action component that is still there. The plug-in can be loaded
    // again. Without services it does nothing. While an action or another call of the host runs, it gives
    // false and changes nothing: the services must stay then.
    [[nodiscard]] virtual bool Unload() = 0;

    // The service that the host starts once its menus are there. The plug-in owns it. Null without services.
    virtual IStartupShutdownService* GetStartupShutdownService() = 0;

    // The component that owns the plug-in's actions, class PlugInID::cActionComponent. Only one exists at a
    // time. It belongs to the plug-in; ReleaseActionComponent or Unload ends it. Null, with the reason in
    // `error`, without services or when the plug-in's own services can't be started.
    virtual IActionComponent* CreateActionComponent(PMString& error) = 0;

    // Ends the component, if there is one. Gives false and changes nothing in the same cases as Unload.
    [[nodiscard]] virtual bool ReleaseActionComponent() = 0;

    virtual const WBaseResourceAccess& GetResourceAccess() const = 0;

protected:
    ~IPlugIn() = default;
};

// The name and the type of the entry, in the module and in the library plugin_shell. It gives the same object
// each time. Hosts of any other compiler or language use plugin/boundary/hopbox_host.h instead.
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
    // False if the place is not known; `info` is not changed then.
    [[nodiscard]] virtual bool GetResourceFile(ResourceFileInfo& info) const = 0;

protected:
    ~WBaseResourceAccess() = default;
};
