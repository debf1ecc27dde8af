#include "apps/printer_processor/JobProcess.h"

#include <sys/prctl.h>
#include <unistd.h>
#include <csignal>

struct JobProcess::Bond
{
    const pid_t parent = getpid();
};

JobProcess::JobProcess() : mBond(std::make_unique<Bond>()) {}

JobProcess::~JobProcess() = default;

bool JobProcess::Start(const QString& program, const QStringList& arguments)
{
    start(program, arguments);
    return waitForStarted(-1);
}

// In the child, before it becomes the command.
void JobProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != mBond->parent)
        _exit(1);
}
