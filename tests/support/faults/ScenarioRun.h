#pragma once

#include "tests/support/Sandbox.h"
#include "tests/support/faults/FaultDriver.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

// A scenario under way: its state in a root of its own, and runs of its task. What is wrong is said in a
// text, empty when nothing is.
class ScenarioRun
{
public:
    struct Outcome
    {
        int status;  // -1: crashed, -2: did not come to an end
        QByteArray error;
    };

    // Prepares the old state, and keeps a copy of it.
    explicit ScenarioRun(const FaultScenario& scenario);

    const FaultScenario& GetScenario() const { return mScenario; }
    QString GetRoot() const { return mSandbox.GetPath(); }

    // A folder beside the root for whoever makes the faults.
    QString GetOwnFolder() const { return mTemplate.path(); }

    // Brings the old state back.
    void PutBack();

    // Takes what is there now for the old state, or for the new one.
    void NoteOld();
    void NoteNew();

    // Runs the task, with another root as its argument where one is given.
    Outcome Run(const QProcessEnvironment& environment, const QString& root = QString()) const;

    // Whether the state is the old one or the new one, and the new one where the task said that it was done.
    QString JudgeState(const Outcome& outcome) const;

    // Whether nothing temporary stays.
    QString JudgeNames() const;

    // Whether the next run, without a fault, is done. Nothing is run where the new state can't be run on.
    QString RunAgain() const;

private:
    QString GetTemplate() const { return mTemplate.path() + QStringLiteral("/root"); }
    QStringList ListNames(const QStringList& ignored) const;

    const FaultScenario& mScenario;
    const Sandbox mSandbox;
    const QTemporaryDir mTemplate;
    QString mOld, mNew;
    QStringList mOldNames, mNewNames;
};
