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
    // The plug-in has all functions that CanExport asks for; `receiver` is the file of the receiving process.
    ExportChecks(const hopbox_plugin_table& plugIn, const hopbox_adaptor& adaptor, const WatchedHost& host,
                 const QString& receiver, CheckReport& report);

    // Whether the table of a plug-in holds what exports need.
    static bool CanExport(const hopbox_plugin_table& plugIn);

    // Makes the Hopbox; false with a line on standard error when that can't be done.
    [[nodiscard]] static bool MakeHopbox(const QString& jobOptions);

    // Loads the plug-in, exports what is open in every way, or the document once, and unloads it.
    void RunAll() { Run(&ExportChecks::ExportAll); }
    void RunOnce() { Run(&ExportChecks::ExportOnce); }

private:
    void Run(void (ExportChecks::*exports)());
    void ExportAll();
    void ExportOnce();
    void Export(hopbox_action action, bool hasPackage);
    void ExportNothing();
    void ExportCancelled(hopbox_action action);
    void ExportUnsaved();
    [[nodiscard]] bool StartReceiver(QProcess& process);
    [[nodiscard]] bool IsReceived(QProcess& process, bool isFolder);

    const hopbox_plugin_table& mPlugIn;
    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mReceiver;
    CheckReport& mReport;
};
