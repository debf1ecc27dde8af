#include "apps/host_check/ApplicationChecks.h"
#include "apps/host_check/CheckReport.h"
#include "apps/host_check/CommandChecks.h"
#include "apps/host_check/ExportChecks.h"
#include "apps/host_check/TableChecks.h"
#include "apps/host_check/WatchedHost.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliMain.h"
#include "foundation/core/GException.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QTemporaryDir>

// Tries an adaptor: its table operation by operation, then exports through the plug-in. Everything that the
// plug-in and its Hopboxes keep lies in a folder of this run alone.

namespace
{
constexpr int cExitSound = 0;
constexpr int cExitFaulty = 1;
constexpr int cExitWrongCall = 2;

const CliProgram cProgram = {
    "hopbox-host-check",
    "tries an adaptor of the plug-in \"Export to Hopbox\"",
    "",
    {{"",
      "tries an adaptor of the plug-in \"Export to Hopbox\"",
      "It loads a library with the entry of hopbox_adaptor.h, tries each operation of the host's table with "
      "what "
      "it has to do and what it has to refuse, and exports the sample that the library opens. It prints each "
      "fault, and what the adaptor lacks. No display is needed.",
      {{"LIBRARY", "the adaptor's library"}},
      {{"module", "FILE", "the plug-in's module; the installed one without it"},
       {"receiver", "FILE", "the receiving process; PrinterProcessorWin.exe beside this program without it"}},
      {{"hopbox-host-check ./libadaptor.so",
        "Tries the adaptor with the plug-in that is installed beside it."}}}},
    {{"exit status",
      "  0  no fault was found\n"
      "  1  the adaptor has faults\n"
      "  2  the call was wrong, or the library, the plug-in or the receiving process can't be used"}}};

// The function behind a library's name; null, with a line on standard error, when there is none.
template <class Function>
Function Find(QLibrary& library, const char* name)
{
    const auto found = reinterpret_cast<Function>(library.resolve(name));
    if (found == nullptr)
        CliConsole::PrintError(QStringLiteral("%1: %2").arg(library.fileName(), library.errorString()));
    return found;
}

// Takes the adaptor in the form that is known here; a line on standard error when it can't be used.
bool CopyTable(const hopbox_adaptor* source, hopbox_adaptor& adaptor)
{
    const bool isUsable = Boundary::Copy(source, adaptor) && adaptor.table != nullptr &&
                          adaptor.open_sample != nullptr && adaptor.close_all != nullptr;
    if (!isUsable)
        CliConsole::PrintError(
            QStringLiteral("The library gives no hopbox_adaptor of version %1.").arg(HOPBOX_VERSION));
    return isUsable;
}

// The same for the plug-in, of which an earlier form may lack what is called here.
bool CopyTable(const hopbox_plugin_table* source, hopbox_plugin_table& plugIn)
{
    const bool isUsable = Boundary::Copy(source, plugIn) && ExportChecks::CanExport(plugIn);
    if (!isUsable)
        CliConsole::PrintError(
            QStringLiteral("The plug-in is of another version, or of a form that can't export by itself."));
    return isUsable;
}

int Check(const hopbox_adaptor& adaptor, const hopbox_plugin_table& plugIn, const QString& receiver,
          const QString& folder)
{
    const QString jobOptions = folder + QStringLiteral("/Check.joboptions");
    QFile file(jobOptions);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write("<< /CompatibilityLevel 1.4 >> setdistillerparams\n") < 0 || !file.flush() ||
        !ExportChecks::MakeHopbox(jobOptions))
        return cExitWrongCall;

    CheckReport report;
    const WatchedHost host(*adaptor.table, adaptor.host);
    TableChecks table(adaptor, host, folder, report);
    if (table.CheckTable()) {
        const QString samples = folder + QStringLiteral("/Samples");
        QDir().mkpath(samples);
        const Boundary::PassedText place(samples);
        report.Expect(adaptor.open_sample(adaptor.host, place) == HOPBOX_OK, "open_sample",
                      QStringLiteral("the sample opens"));
        table.CheckDocument();
        table.CheckBook();
        ApplicationChecks(adaptor, host, report).Run();
        CommandChecks(adaptor, host, folder, report).Run();
        table.CheckSaving();
        // Exports of what is wrong already tell nothing more. What was unloaded can be loaded again.
        ExportChecks exports(plugIn, adaptor, host, receiver, report);
        if (report.GetFaultCount() == 0) {
            exports.RunAll();
            exports.RunOnce();
        }
        table.CheckClosing();
        table.CheckHandles();
    }
    report.PrintSummary();
    return report.GetFaultCount() == 0 ? cExitSound : cExitFaulty;
}

int Run(const CliCall& call, const QString& folder)
{
    const QDir program(QCoreApplication::applicationDirPath());
    const auto find = [&](const char* option, const char* otherwise) {
        return call.Has(option) ? QDir::current().absoluteFilePath(call.Get(option))
                                : program.absoluteFilePath(QLatin1String(otherwise));
    };
    const QString receiver = find("receiver", "PrinterProcessorWin.exe");
    QLibrary library(QDir::current().absoluteFilePath(call.GetArgument(0)));
    QLibrary module(find("module", HOPBOX_MODULE_PLACE));
    const auto getAdaptor = Find<hopbox_adaptor_function>(library, HOPBOX_ADAPTOR_ENTRY_NAME);
    const auto getPlugIn = getAdaptor ? Find<hopbox_entry_function>(module, HOPBOX_ENTRY_NAME) : nullptr;
    if (getPlugIn == nullptr)
        return cExitWrongCall;
    hopbox_adaptor adaptor;
    hopbox_plugin_table plugIn;
    if (!CopyTable(getAdaptor(HOPBOX_VERSION), adaptor) || !CopyTable(getPlugIn(HOPBOX_VERSION), plugIn))
        return cExitWrongCall;
    if (!QFile::exists(receiver)) {
        CliConsole::PrintError(QStringLiteral("There is no file \"%1\".").arg(receiver));
        return cExitWrongCall;
    }
    return Check(adaptor, plugIn, receiver, folder);
}
}  // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    CliConsole::SetName(QStringLiteral("hopbox-host-check"));
    CliCall call;
    if (const std::optional<int> status = AnswerCli(cProgram, argc, argv, call))
        return *status;
    const QTemporaryDir folder;
    qputenv("MORVANE_ROOT", QFile::encodeName(folder.path()));
    try {
        return Run(call, folder.path());
    } catch (const GException& error) {
        CliConsole::PrintError(error.GetDescription());
        return cExitWrongCall;
    }
}
