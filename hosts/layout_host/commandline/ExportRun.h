#pragma once

#include "hosts/layout_host/commandline/CommandLine.h"
#include "hosts/layout_host/commandline/DialogDriver.h"
#include "hosts/scribus/host/HostMenus.h"
#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/runner/IHostFrontend.h"

#include <QElapsedTimer>
#include <QJsonObject>

// One export from the command line: opens the file, chooses the plug-in's menu entry, lets a driver answer
// its dialog, and tells how it went. Ends in time whatever happens: the user's stop and the end of the time
// cancel a running command and close what is open. For the main thread.
class ExportRun : public IHostFrontend
{
public:
    ExportRun(const CommandLine& line, const ScribusSetup& setup);
    ~ExportRun() override;

    // Runs the export. What it gives is what the program prints:
    //
    //     result   "success"; "alert" when the plug-in or the host showed one; "cancelled" when the program
    //     was
    //              told to stop; "failed" when the choices could not be made or the time was up
    //     pdf      the exported file; null when there is none
    //     package  the package's folder; null when there is none
    //     alert    the alert's text, of several the first; null when there was none
    //     title    its title; null where it has none
    //     error    why the run failed or was cancelled; null otherwise
    QJsonObject Run();

    void BeginCommand(const QString& title, int steps) override;
    void BeginStep(const QString& text) override;
    bool IsCancelled() override;
    void EndCommand() override;
    int32_t ShowAlert(const QString& text, const QString& button1, const QString& button2,
                      const QString& button3, int32_t defaultButton, int32_t cancelButton) override;
    Decision AskToGoOn(const QString& documentName, const QStringList& problems) override;
    QString AskForSavePath(const QString& documentName) override;

private:
    void Export();
    GResult OpenFile();
    GResult ChooseEntry(IActionComponent& actions);
    void WatchForEnd();
    bool HasToEnd();
    const QString& GetCause() const;
    QJsonObject MakeReport() const;

    CommandLine mLine;
    QElapsedTimer mTime;
    ScribusHost mHost;
    HostMenus mMenus;
    DialogDriver mDriver;
    QList<ShownAlert> mAlerts;  // the host's own
    QString mError;
    QString mActivity;   // the command that runs, or the step of the run
    QString mEndReason;  // why the run was ended from outside; empty while it was not
};
