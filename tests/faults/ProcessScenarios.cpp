#include "Scenarios.h"
#include "foundation/system/GBoundProcess.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <cstdio>

// The program's own calls are those of another process.
CHILD_ROLE(RunProgram)
{
    GBoundProcess process(GBoundProcess::Ending::cByRequest);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD"_q);
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(arguments.at(0));
    if (!process.Start("/bin/mkdir"_q, {"-p"_q, "made"_q})) {
        std::fprintf(stderr, "%s\n", qPrintable(process.errorString()));
        return 1;
    }
    return process.waitForFinished(-1) && process.exitCode() == 0 ? 0 : 2;
}

FaultScenario GetProgramStart()
{
    FaultScenario scenario{
        "ProgramStart",
        [](const QString&) {},
        QString(),
        {"RunProgram"_q, "%1"_q},
        [](const QString& root) { return QFile::exists(root + "/made"_q) ? "made"_q : "not made"_q; }};
    scenario.takesEveryError = true;
    scenario.failsToOld = true;
    return scenario;
}
