#pragma once

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

    // Loads the module, gives it the services and starts it: its actions and menu entries are registered when
    // this returns true. False, with a text for the user in GetError, leaves nothing of it in use. Once.
    [[nodiscard]] bool Load(const QString& file, IHostServices& services);

    const QString& GetError() const { return mError; }

    // What answers menu choices; null until the module is loaded.
    IActionComponent* GetActions() const { return mActions; }

private:
    [[nodiscard]] bool FindEntry();
    [[nodiscard]] bool GiveServices(IHostServices& services);
    [[nodiscard]] bool StartUp();
    bool Fail(const QString& text);

    QLibrary mLibrary;
    QString mError;
    std::unique_ptr<ModulePlugIn> mPlugIn;
    IActionComponent* mActions = nullptr;
    bool mHasServices = false;
};
