#pragma once

#include "foundation/core/GResult.h"

#include <QLibrary>
#include <QString>

#include <memory>

class IActionComponent;
class IHostServices;
class ModulePlugIn;

// The plug-in as this host has it: a module that is loaded at run time and known by its one entry. Goes
// through the plug-in's life in the order that it asks for, and back when this goes out of scope; the
// services outlive it. For the main thread.
class PlugInModule
{
public:
    PlugInModule();
    ~PlugInModule();
    PlugInModule(const PlugInModule&) = delete;
    PlugInModule& operator=(const PlugInModule&) = delete;

    // Where the module lies: HOPBOX_PLUGIN names the file, else it is beside the program, in the folder
    // "plugin" beside the program's own folder, or where it is installed.
    static QString FindFile();

    // Loads the module, gives it the services and starts it: its actions and menu entries are registered
    // after a success. A failure has a text for the user, and leaves nothing of it in use. Once.
    GResult Load(const QString& file, IHostServices& services);

    // What answers menu choices; null until the module is loaded.
    IActionComponent* GetActions() const { return mActions; }

private:
    GResult FindEntry();
    GResult GiveServices(IHostServices& services);
    GResult StartUp();

    QLibrary mLibrary;
    std::unique_ptr<ModulePlugIn> mPlugIn;
    IActionComponent* mActions = nullptr;
    bool mHasServices = false;
};
