#include "foundation/system/GBoundProcess.h"

#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>
#include <csignal>
#include <new>

// The process, while one of its threads is starting a program.
static thread_local pid_t tStarter = 0;

// In the child, as soon as there is one. Qt has it wait for a word of its parent before anything else: for
// ever if the parent is killed before it gives it, and with all of the parent's files and locks.
static void BindNewChild()
{
    if (tStarter == 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != tStarter)
        _exit(1);
}

struct GBoundProcess::Bond
{
    const int signal;
};

GBoundProcess::GBoundProcess(Ending ending) : mBond(new Bond{ending == Ending::cByForce ? SIGKILL : SIGTERM})
{
    static const bool isRegistered = pthread_atfork(nullptr, nullptr, BindNewChild) == 0;
    if (!isRegistered)
        throw std::bad_alloc();
}

GBoundProcess::~GBoundProcess() = default;

bool GBoundProcess::Start(const QString& program, const QStringList& arguments, OpenMode mode)
{
    tStarter = getpid();
    start(program, arguments, mode);
    tStarter = 0;
    return waitForStarted(-1);
}

// In the child, before it becomes the program. That this is overridden has Qt start the child by fork(),
// which calls the function above; the ways without it don't.
void GBoundProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, mBond->signal);
}
