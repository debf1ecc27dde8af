#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

// Makes every call of the C library that a task makes fail once, with each error that the call can give, and
// looks afterwards whether the task kept its promise:
//
// - the state is the old one or the new one, never a part, and the new one where the task said that it was
//   done;
// - a failure is told on standard error, with the system's reason;
// - nobody crashed or hung;
// - nothing temporary stays: the names that are there are those of the old state or of the new one;
// - the next run, without a fault, is done.
//
// To add a scenario, write a FaultScenario in a file of tests/faults/ beside the others, name it in
// Scenarios.h, and put it into the table of FaultsTest.cpp. Each becomes a test of its own. A run fails at
// one call only, so a scenario that makes few calls finds the same with less time: make what the task needs
// in `prepare`, which runs once. By default each call fails with one of its errors, in turn; with
// HOPBOX_FAULTS=all in the environment, as tools/nightly sets it, with every error.
//
// What fails is printed as the line that runs it again by hand:
//
//     write ENOSPC .../AppData/x.prefs (call 17): the state is neither old nor new
//
// Natively only: the library of FaultCalls.h is preloaded into the child.
struct FaultScenario
{
    const char* name;

    // Makes the old state below the root, which MORVANE_ROOT names. Runs once, in the test's own process; the
    // state is put back from a copy before each run.
    std::function<void(const QString& root)> prepare;

    // The task: a program of this build by its file's name, or, where it is empty, a role of the test program
    // (CHILD_ROLE) as the first argument. In the arguments "%1" stands for the root. Its status is 0 when it
    // was done, anything else when not, with the reason on standard error.
    QString program;
    QStringList arguments;

    // Says, in a text, what the state is, as the product reads it; "a part" for one that must not be, whoever
    // made it. Two runs of the task lead to one text.
    std::function<QString(const QString& root)> look;

    // Names of files and folders, as wildcards, that may be there or not, whatever they hold: lock files, for
    // instance.
    QStringList ignored = {};

    // Whether the task may be done on the new state again and leaves it as it is.
    bool isRepeatable = true;

    // Whether a failure is told with the system's reason. False asks for any line on standard error.
    bool tellsReason = true;

    // Whether each call fails with every error that it can give, in each run of the tests.
    bool takesEveryError = false;

    // Only every so many calls fail, unless every call fails with every error: for tasks of many calls.
    int stride = 1;

    // Whether a run that said that it failed has to leave the old state.
    bool failsToOld = false;

    // Names, likewise, of what a failed run may leave, and the next one takes away.
    QStringList leftovers = {};
};

// Runs a scenario; each broken promise is a failure of the running test.
void RunFaultScenario(const FaultScenario& scenario);

// The calls of a scenario's run without a fault, in their order: "rename /tmp/x/a.prefs".
QStringList ListCalls(const FaultScenario& scenario);
