#pragma once

#include "plugin/boundary/hopbox_host.h"

#include <QString>
#include <QStringList>

class CheckReport;
class QProcess;
class WatchedHost;

// Whole exports through the plug-in to a receiving process, with a Hopbox of the check's own, in the root
// that MORVANE_ROOT names.
class ExportChecks
{
public:
    // The plug-in is the module's; `receiver` is the file of the receiving process.
    ExportChecks(hopbox_entry_function entry, const WatchedHost& host, const QString& receiver,
                 CheckReport& report);

    // Makes the Hopbox; false with a line on standard error when that can't be done.
    static bool MakeHopbox(const QString& jobOptions);

    // Loads the plug-in, exports what is open, and unloads it.
    void Run();

private:
    void ExportAll(const hopbox_plugin_table& plugIn);
    void Export(const hopbox_plugin_table& plugIn, hopbox_action action, bool hasPackage);
    void ExportNothing(const hopbox_plugin_table& plugIn);
    bool StartReceiver(QProcess& process);
    bool IsReceived(QProcess& process, bool isFolder);

    hopbox_entry_function mEntry;
    const WatchedHost& mHost;
    const QString mReceiver;
    CheckReport& mReport;
};
