#include "tests/support/ChildProcess.h"

#include "KilledParty.h"

struct KilledParty::Process
{
    Process(const QString& role, const QStringList& arguments) : child(role, arguments) {}

    ChildProcess child;
};

KilledParty::KilledParty(const QString& role, const QStringList& arguments)
    : mProcess(std::make_unique<Process>(role, arguments))
{
    mProcess->child.Say("go");
}

KilledParty::~KilledParty() = default;

uint32_t KilledParty::GetID() const
{
    return static_cast<uint32_t>(mProcess->child.GetProcessID());
}
