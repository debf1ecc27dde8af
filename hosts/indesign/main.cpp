#include "foundation/cli/CliConsole.h"
#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"
#include "foundation/trace/QtLogger.h"
#include "hosts/indesign/bridge/BridgeProgram.h"

#include <QApplication>

// The helper of the start-up script: started by it, and of no use without it.

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("hopbox-bridge"));
    QApplication::setQuitOnLastWindowClosed(false);
    GTrace::SetLogger(std::make_shared<Morvane::QtLogger>());
    try {
        return BridgeProgram().Run();
    } catch (const GException& error) {
        CliConsole::PrintError(error.GetDescription());
        return 1;
    }
}
