#include "tests/support/faults/ScenarioRun.h"

#include "tests/support/TestFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

static constexpr int cTimeLimit = 30000;  // milliseconds of one run

static void CopyFolder(const QString& from, const QString& to)
{
    namespace fs = std::filesystem;
    fs::copy(fs::path(from.toStdString()), fs::path(to.toStdString()),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

ScenarioRun::ScenarioRun(const FaultScenario& scenario) : mScenario(scenario)
{
    QDir().mkpath(GetRoot());
    mScenario.prepare(GetRoot());
    CopyFolder(GetRoot(), GetTemplate());
    NoteOld();
}

void ScenarioRun::PutBack()
{
    QDir(GetRoot()).removeRecursively();
    CopyFolder(GetTemplate(), GetRoot());
}

void ScenarioRun::NoteOld()
{
    mOld = mScenario.look(GetRoot());
    mOldNames = ListNames(mScenario.ignored);
}

void ScenarioRun::NoteNew()
{
    mNew = mScenario.look(GetRoot());
    mNewNames = ListNames(mScenario.ignored);
    EXPECT_FALSE(mNew.contains(QLatin1String("a part"))) << mNew.toStdString();
    EXPECT_TRUE(mNew != mOld || mNewNames != mOldNames) << "The task changes nothing.";
}

QStringList ScenarioRun::ListNames(const QStringList& ignored) const
{
    QStringList names;
    for (const QString& name : ReadTree(GetRoot()).keys()) {
        // By its own name, by that of a folder that it lies in, or by its path.
        QStringList parts = name.split(QLatin1Char('/'), Qt::SkipEmptyParts);
        parts.append(name);
        const bool isIgnored = std::any_of(parts.cbegin(), parts.cend(),
                                           [&](const QString& part) { return QDir::match(ignored, part); });
        if (!isIgnored)
            names.append(name);
    }
    return names;
}

ScenarioRun::Outcome ScenarioRun::Run(const QProcessEnvironment& environment, const QString& root) const
{
    QStringList arguments = mScenario.arguments;
    arguments.replaceInStrings(QStringLiteral("%1"), root.isEmpty() ? GetRoot() : root);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(mTemplate.path());
    const bool isRole = mScenario.program.isEmpty();
    process.start(isRole ? QCoreApplication::applicationFilePath()
                         : GetProgramPath(mScenario.program.toLatin1().constData()),
                  (isRole ? QStringList{QStringLiteral("--child")} : QStringList()) + arguments,
                  QIODevice::ReadOnly);
    const bool isEnded = process.waitForFinished(cTimeLimit);
    if (!isEnded) {
        process.kill();
        process.waitForFinished();
    }
    const bool isNormal = process.exitStatus() == QProcess::NormalExit;
    return {!isEnded ? -2 : isNormal ? process.exitCode() : -1, process.readAllStandardError()};
}

QString ScenarioRun::JudgeState(const Outcome& outcome) const
{
    if (outcome.status < 0)
        return outcome.status == -1 ? QStringLiteral("it crashed") : QStringLiteral("it did not end");
    const QString state = mScenario.look(GetRoot());
    if ((state == mNew && (outcome.status == 0 || !mScenario.failsToOld)) ||
        (state == mOld && outcome.status != 0))
        return QString();
    return (outcome.status == 0 ? QStringLiteral("it said that it was done, and the state is:\n")
                                : QStringLiteral("the state is neither old nor new:\n")) +
           state;
}

QString ScenarioRun::JudgeNames() const
{
    const QStringList names = ListNames(mScenario.ignored + mScenario.leftovers);
    return names == mOldNames || names == mNewNames
               ? QString()
               : QStringLiteral("what is there is:\n") + names.join(QLatin1Char('\n'));
}

QString ScenarioRun::RunAgain() const
{
    if (!mScenario.isRepeatable && mScenario.look(GetRoot()) == mNew)
        return QString();
    const Outcome outcome = Run(QProcessEnvironment::systemEnvironment());
    if (outcome.status != 0)
        return QStringLiteral("the next run fails with status %1: ").arg(outcome.status) +
               QString::fromUtf8(outcome.error);
    if (mScenario.look(GetRoot()) != mNew)
        return QStringLiteral("the next run leads to:\n") + mScenario.look(GetRoot());
    const QStringList names = ListNames(mScenario.ignored);
    return names == mNewNames
               ? QString()
               : QStringLiteral("after the next run there is:\n") + names.join(QLatin1Char('\n'));
}
