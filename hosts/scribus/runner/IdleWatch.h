#pragma once

#include <QElapsedTimer>
#include <QFile>

// Tells a program that waits for somebody from one that works: it neither runs nor has a program of its own
// running for it, for some seconds on end. A program that waits for a disk or for the processor is at work.
class IdleWatch
{
public:
    explicit IdleWatch(qint64 processId) : mProcessId(processId) { mSince.start(); }

    // Looks at the program; to be asked several times a second.
    bool HasWaitedFor(int seconds);

private:
    qint64 mProcessId;
    qint64 mTicks = -1;  // of the processor that it had used, when it last worked
    QElapsedTimer mSince;
};
