#pragma once

#include "plugin/boundary/hopbox_adaptor.h"

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
    ExportChecks(hopbox_entry_function entry, const hopbox_adaptor& adaptor, const WatchedHost& host,
                 const QString& receiver, CheckReport& report);

    // Makes the Hopbox; false with a line on standard error when that can't be done.
    static bool MakeHopbox(const QString& jobOptions);

    // Loads the plug-in, exports what is open in every way, or the document once, and unloads it.
    void RunAll() { Run(&ExportChecks::ExportAll); }
    void RunOnce() { Run(&ExportChecks::ExportOnce); }

private:
    void Run(void (ExportChecks::*exports)(const hopbox_plugin_table& plugIn));
    void ExportAll(const hopbox_plugin_table& plugIn);
    void ExportOnce(const hopbox_plugin_table& plugIn);
    void Export(const hopbox_plugin_table& plugIn, hopbox_action action, bool hasPackage);
    void ExportNothing(const hopbox_plugin_table& plugIn);
    void ExportCancelled(const hopbox_plugin_table& plugIn);
    void ExportUnsaved(const hopbox_plugin_table& plugIn);
    bool StartReceiver(QProcess& process);
    bool IsReceived(QProcess& process, bool isFolder);

    hopbox_entry_function mEntry;
    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mReceiver;
    CheckReport& mReport;
};
