#pragma once

#include "foundation/core/GResult.h"
#include "plugin/boundary/hopbox_host.h"

#include <QJsonObject>
#include <QLibrary>
#include <QString>

// The plug-in's module as the helper has it: loaded at run time, known by its one entry. For the main thread.
class BridgeModule
{
public:
    BridgeModule() = default;

    // Takes the plug-in down in the order that it asks for.
    ~BridgeModule();
    BridgeModule(const BridgeModule&) = delete;
    BridgeModule& operator=(const BridgeModule&) = delete;

    // Where the module lies: HOPBOX_PLUGIN names the file, else it is beside the program, or in the folder
    // "plugin" beside the program's own folder.
    static QString FindFile();

    // Loads the module, gives it the host and starts it. A failure has a text for the user, and leaves
    // nothing of it in use. Once.
    GResult Load(const QString& file, const hopbox_host_table& table, void* host);

    // What an action's menu entry is to show: "enabled" and "name". The user gives
    // shortcuts in the application.
    QJsonObject GetState(int32_t action) const;

    // Returns when the action's windows are closed.
    void Do(int32_t action) const { Call(&hopbox_plugin_table::do_action, action); }

private:
    // A module of an earlier form may lack a function.
    template <class... Parameters, class... Arguments>
    int32_t Call(int32_t (*hopbox_plugin_table::*operation)(Parameters...), Arguments... arguments) const
    {
        return mTable.*operation == nullptr ? int32_t(HOPBOX_UNSUPPORTED) : (mTable.*operation)(arguments...);
    }

    QLibrary mLibrary;
    hopbox_plugin_table mTable = {};
    bool mIsLoaded = false;
};
