#include "apps/host_check/CheckReport.h"

#include "foundation/cli/CliConsole.h"

using CliConsole::Print;

void CheckReport::Expect(bool isRight, const char* operation, const QString& what)
{
    const QString name = QString::fromLatin1(operation);
    ++mTried;
    if (!mDone.contains(name))
        mDone.append(name);
    if (isRight)
        return;
    ++mFaults;
    Print(QStringLiteral("fault  %1: not so: %2\n").arg(name, what));
}

void CheckReport::Lack(const char* operation, const QString& consequence)
{
    mLacked.append(QStringLiteral("lacks  %1: %2\n").arg(QString::fromLatin1(operation), consequence));
}

void CheckReport::PrintSummary() const
{
    for (const QString& line : mLacked)
        Print(line);
    Print(QStringLiteral("tried  %1\n").arg(mDone.join(QStringLiteral(", "))));
    Print(QStringLiteral("%1 tries, %2 faults\n").arg(mTried).arg(mFaults));
}
