#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliProgram.h"
#include "foundation/trace/GTrace.h"
#include "foundation/trace/QtLogger.h"
#include "hosts/layout_host/commandline/CommandLine.h"
#include "hosts/layout_host/commandline/ExportRun.h"
#include "hosts/layout_host/commandline/LastResort.h"
#include "hosts/layout_host/window/HostWindow.h"
#include "hosts/scribus/panels/HostTexts.h"
#include "hosts/scribus/pdf/SettingsReport.h"
#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"

#include <QApplication>
#include <QJsonDocument>
#include <QLocale>
#include <QLoggingCategory>

#include <memory>

// A page layout application for Linux desktops: it opens documents and books that Scribus reads, and offers
// them to the plug-in that it loads. With --export it does what a person would do in its window.

namespace
{
// A program that lies elsewhere is named by the environment.
ScribusSetup MakeSetup()
{
    ScribusSetup setup = ScribusSetup::MakeForUser();
    setup.scribus = qEnvironmentVariable("LAYOUT_HOST_SCRIBUS", setup.scribus);
    return setup;
}

// Whether windows can be shown; Qt ends the process when they can't.
bool HasDisplay()
{
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    }
    return false;
}

// The platform without a screen says of much that it can't do it; nobody looks for it there.
void GoOffscreen()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
}

int RunExport(const CommandLine& line)
{
    const LastResort lastResort(line.seconds);
    ExportRun run(line, MakeSetup());
    const QJsonObject report = run.Run();
    CliConsole::Print(QString::fromUtf8(QJsonDocument(report).toJson()));
    const bool isDone = report.value(QLatin1String("result")).toString() == QLatin1String("success");
    return CliConsole::Finish() && isDone ? cCliDone : cCliFailed;
}

int ReportJobOptions(const QString& path)
{
    JobOptions options;
    const GResult read = options.Read(path);
    const QString fault = read.HasSucceeded() ? JobOptionsRules::FindFault(options) : read.GetReason();
    if (!fault.isEmpty()) {
        CliConsole::PrintError(QStringLiteral("\"%1\" can't be used: %2.").arg(path, fault));
        return cCliFailed;
    }
    const QJsonObject report{{QStringLiteral("settings"), SettingsReport::Make(options)}};
    CliConsole::Print(QString::fromUtf8(QJsonDocument(report).toJson()));
    return CliConsole::Finish() ? cCliDone : cCliFailed;
}

int RunWindow(const CommandLine& line)
{
    HostTexts::Load(QLocale::system());
    HostWindow window(MakeSetup());
    window.show();
    window.Start(line.files);
    return QApplication::exec();
}
}  // namespace

int main(int argc, char** argv)
{
    CommandLine line;
    if (const std::optional<int> status = CommandLine::Read(argc, argv, line))
        return *status;
    if (!line.jobOptions.isEmpty())
        return ReportJobOptions(line.jobOptions);
    if (line.isExport)
        GoOffscreen();
    if (!HasDisplay()) {
        CliConsole::PrintError(QStringLiteral("There is no display for the window."));
        return cCliFailed;
    }
    QApplication application(argc, argv);
    GTrace::SetLogger(std::make_shared<Morvane::QtLogger>());
    QApplication::setApplicationName(QStringLiteral("layout-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("Layout Host"));
    return line.isExport ? RunExport(line) : RunWindow(line);
}
