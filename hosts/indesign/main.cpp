#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliMain.h"
#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"
#include "foundation/trace/QtLogger.h"
#include "hosts/indesign/bridge/BridgeProgram.h"

#include <QApplication>

// The helper of the start-up script: started by it, and of no use without it.

namespace
{
const CliProgram cProgram = {
    "hopbox-bridge",
    "holds the plug-in for an application that has scripts only",
    "",
    {{"",
      "holds the plug-in for an application that has scripts only",
      "The start-up script in the application starts it. It shows the plug-in's windows, asks the script for "
      "everything else, and ends with the application. Started by hand it waits a minute for a script.",
      {},
      {},
      {}}},
    {{"exit status",
      "  0  the application has ended, no script came, or another helper is there already\n"
      "  1  it could not begin; standard error says why\n"
      "  2  the call was wrong; standard error names the wrong word"},
     {"environment",
      "  HOPBOX_BRIDGE_SECONDS  how long an answer of the script may take, in seconds\n"
      "  HOPBOX_PLUGIN          the file of the plug-in\n"
      "  MORVANE_ROOT           a folder for everything that belongs to Hopboxes, in place of your "
      "own"},
     cCliStyle}};

// Without windows, so that a call is answered where there is no display.
std::optional<int> AnswerCall(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CliCall call;
    return AnswerCli(cProgram, argc, argv, call);
}
}  // namespace

int main(int argc, char** argv)
{
    if (const std::optional<int> status = AnswerCall(argc, argv))
        return *status;
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("hopbox-bridge"));
    QApplication::setQuitOnLastWindowClosed(false);
    GTrace::SetLogger(std::make_shared<Morvane::QtLogger>());
    try {
        return BridgeProgram().Run();
    } catch (const GException& error) {
        CliConsole::PrintError(error.GetDescription());
        return cCliFailed;
    }
}
