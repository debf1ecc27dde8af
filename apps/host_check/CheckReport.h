#pragma once

#include <QString>
#include <QStringList>

// What a run of the check has found: prints each fault when it is found, and at the end what the adaptor does
// and lacks.
class CheckReport
{
public:
    // Notes that something was tried of an operation; prints a fault when it is not as it has to be.
    void Expect(bool isRight, const char* operation, const QString& what);

    // An operation that the adaptor does not have, and what is without it.
    void Lack(const char* operation, const QString& consequence);

    void PrintSummary() const;
    int GetFaultCount() const { return mFaults; }

private:
    int mTried = 0;
    int mFaults = 0;
    QStringList mDone;    // operations
    QStringList mLacked;  // lines
};
