#include "foundation/trace/GTrace.h"
#include "foundation/trace/QtLogger.h"
#include "hosts/layout_host/commandline/CommandLine.h"
#include "hosts/layout_host/commandline/ExportRun.h"
#include "hosts/layout_host/commandline/LastResort.h"
#include "hosts/layout_host/window/HostWindow.h"

#include <QApplication>
#include <QJsonDocument>
#include <QLoggingCategory>

#include <cstdio>
#include <memory>

// A page layout application for Linux desktops: it opens documents and books that Scribus reads, and offers
// them to the plug-in that it loads. With --export it does what a person would do in its window.

namespace
{
constexpr int cExitDone = 0;
constexpr int cExitFailed = 1;
constexpr int cExitUsage = 2;

void Print(std::FILE* file, const QString& text)
{
    std::fputs(text.toUtf8().constData(), file);
    std::fflush(file);
}

// Programs that lie elsewhere are named by the environment.
ScribusSetup MakeSetup()
{
    ScribusSetup setup = ScribusSetup::MakeForUser();
    setup.scribus = qEnvironmentVariable("LAYOUT_HOST_SCRIBUS", setup.scribus);
    setup.qpdf = qEnvironmentVariable("LAYOUT_HOST_QPDF", setup.qpdf);
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
    Print(stdout, QString::fromUtf8(QJsonDocument(report).toJson()));
    return report.value(QLatin1String("result")).toString() == QLatin1String("success") ? cExitDone
                                                                                        : cExitFailed;
}

int RunWindow(const CommandLine& line)
{
    HostWindow window(MakeSetup());
    window.show();
    window.Start(line.files);
    return QApplication::exec();
}
}  // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    const CommandLine line = CommandLine::Parse(arguments);
    if (line.mode == CommandLine::Mode::Help) {
        Print(stdout, CommandLine::GetUsage());
        return cExitDone;
    }
    if (line.mode == CommandLine::Mode::Wrong) {
        Print(stderr, QStringLiteral("layout-host: %1\n%2").arg(line.error, CommandLine::GetUsage()));
        return cExitUsage;
    }
    if (line.mode == CommandLine::Mode::Export)
        GoOffscreen();
    if (!HasDisplay()) {
        Print(stderr, QStringLiteral("layout-host: there is no display for the window\n"));
        return cExitFailed;
    }
    QApplication application(argc, argv);
    GTrace::SetLogger(std::make_shared<Morvane::QtLogger>());
    QApplication::setApplicationName(QStringLiteral("layout-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("Layout Host"));
    return line.mode == CommandLine::Mode::Export ? RunExport(line) : RunWindow(line);
}
