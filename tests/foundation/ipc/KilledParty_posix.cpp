#include "tests/support/ChildRoles.h"

#include "KilledParty.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

struct KilledParty::Process
{
    pid_t id;
};

KilledParty::KilledParty(const QString& role, const QStringList& arguments)
    : mProcess(std::make_unique<Process>(Process{::fork()}))
{
    if (mProcess->id != 0)
        return;
    if (std::freopen("/dev/null", "r", stdin) == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr)
        ::_exit(1);
    ::_exit(RunChildRole(role, arguments));
}

KilledParty::~KilledParty()
{
    ::kill(mProcess->id, SIGKILL);
    ::waitpid(mProcess->id, nullptr, 0);
}

uint32_t KilledParty::GetID() const
{
    return static_cast<uint32_t>(mProcess->id);
}
