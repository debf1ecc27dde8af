#include "tests/support/faults/FaultDriver.h"

#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"
#include "tests/support/faults/FaultCalls.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>

namespace
{
constexpr int cTimeLimit = 30000;  // milliseconds of one run

struct Outcome
{
    int status;  // -1: crashed, -2: did not come to an end
    QByteArray error;
    QStringList report;
};

int CountErrors(const FaultCall& call)
{
    return static_cast<int>(std::find(std::begin(call.errors), std::end(call.errors), 0) -
                            std::begin(call.errors));
}

const FaultCall* FindCall(const QString& reportLine)
{
    const QString name = reportLine.section(QLatin1Char(' '), 0, 0);
    const auto found = std::find_if(std::begin(cFaultCalls), std::end(cFaultCalls),
                                    [&](const FaultCall& call) { return name == QLatin1String(call.name); });
    return found == std::end(cFaultCalls) ? nullptr : found;
}

void CopyFolder(const QString& from, const QString& to)
{
    namespace fs = std::filesystem;
    fs::copy(fs::path(from.toStdString()), fs::path(to.toStdString()),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

// One scenario under way.
class FaultRun
{
public:
    explicit FaultRun(const FaultScenario& scenario) : mScenario(scenario)
    {
        QDir().mkpath(mSandbox.GetPath());
        mScenario.prepare(mSandbox.GetPath());
        CopyFolder(mSandbox.GetPath(), GetTemplate());
        mOld = mScenario.look(mSandbox.GetPath());
        mOldNames = ListNames(mScenario.ignored);
    }

    // The run without a fault, which also tells what calls there are.
    QStringList RunWhole()
    {
        PutBack();
        const Outcome outcome = Run(0, 0);
        EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
        mNew = mScenario.look(mSandbox.GetPath());
        mNewNames = ListNames(mScenario.ignored);
        EXPECT_TRUE(mNew != mOld || mNewNames != mOldNames) << "The task changes nothing.";
        return outcome.report;
    }

    // Gives what is wrong after a run in which a call failed; empty when the promise was kept.
    QString RunWithFault(int number, int index, QString& fault)
    {
        PutBack();
        const Outcome outcome = Run(number, index);
        fault = outcome.report.value(0, QStringLiteral("no call failed"));
        QString wrong = Judge(outcome, fault);
        const bool isNew = mScenario.look(mSandbox.GetPath()) == mNew;
        if (wrong.isEmpty() && (mScenario.isRepeatable || !isNew))
            wrong = RunAgain();
        return wrong;
    }

private:
    QString GetTemplate() const { return mTemplate.path() + QStringLiteral("/root"); }

    void PutBack()
    {
        QDir(mSandbox.GetPath()).removeRecursively();
        CopyFolder(GetTemplate(), mSandbox.GetPath());
    }

    QStringList ListNames(const QStringList& ignored) const
    {
        QStringList names;
        for (const QString& name : ReadTree(mSandbox.GetPath()).keys()) {
            // By its own name, by that of a folder that it lies in, or by its path.
            QStringList parts = name.split(QLatin1Char('/'), Qt::SkipEmptyParts);
            parts.append(name);
            const bool isIgnored = std::any_of(parts.cbegin(), parts.cend(), [&](const QString& part) {
                return QDir::match(ignored, part);
            });
            if (!isIgnored)
                names.append(name);
        }
        return names;
    }

    Outcome Run(int number, int index) const
    {
        const QString report = mTemplate.path() + QStringLiteral("/report");
        QFile::remove(report);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (number >= 0) {
            environment.insert(QStringLiteral("LD_PRELOAD"), QCoreApplication::applicationDirPath() +
                                                                 QStringLiteral("/preloaded_faults.so"));
            environment.insert(QLatin1String(cFaultRoot), mSandbox.GetPath());
            environment.insert(QLatin1String(cFaultNumber), QString::number(number));
            environment.insert(QLatin1String(cFaultIndex), QString::number(index));
            environment.insert(QLatin1String(cFaultReport), report);
        }
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(mTemplate.path());
        const bool isRole = mScenario.program.isEmpty();
        process.start(isRole ? QCoreApplication::applicationFilePath()
                             : GetProgramPath(mScenario.program.toLatin1().constData()),
                      (isRole ? QStringList{QStringLiteral("--child")} : QStringList()) + GetArguments(),
                      QIODevice::ReadOnly);
        const bool isEnded = process.waitForFinished(cTimeLimit);
        if (!isEnded) {
            process.kill();
            process.waitForFinished();
        }
        const bool isNormal = process.exitStatus() == QProcess::NormalExit;
        const int status = !isEnded ? -2 : isNormal ? process.exitCode() : -1;
        const QString lines = QString::fromUtf8(number >= 0 ? ReadFile(report) : QByteArray());
        return {status, process.readAllStandardError(), lines.split(QLatin1Char('\n'), Qt::SkipEmptyParts)};
    }

    QStringList GetArguments() const
    {
        QStringList arguments = mScenario.arguments;
        return arguments.replaceInStrings(QStringLiteral("%1"), mSandbox.GetPath());
    }

    QString Judge(const Outcome& outcome, const QString& fault) const
    {
        if (outcome.status < 0)
            return outcome.status == -1 ? QStringLiteral("it crashed") : QStringLiteral("it did not end");
        const QString state = mScenario.look(mSandbox.GetPath());
        if (state != mNew && (state != mOld || outcome.status == 0))
            return (outcome.status == 0 ? QStringLiteral("it said that it was done, and the state is:\n")
                                        : QStringLiteral("the state is neither old nor new:\n")) +
                   state;
        if (outcome.status != 0 && !TellsReason(outcome.error, fault))
            return QStringLiteral("the reason is not told: ") + QString::fromUtf8(outcome.error);
        const QStringList names = ListNames(mScenario.ignored + mScenario.leftovers);
        if (names != mOldNames && names != mNewNames)
            return QStringLiteral("what is there is:\n") + names.join(QLatin1Char('\n'));
        return QString();
    }

    // Whether an error names the system's reason for the call that failed.
    bool TellsReason(const QByteArray& error, const QString& fault) const
    {
        const QString name = fault.section(QLatin1Char(' '), 1, 1);
        const FaultCall* const call = FindCall(fault);
        if (call == nullptr || !mScenario.tellsReason)
            return call != nullptr && !error.isEmpty();
        return std::any_of(std::begin(call->errors), std::end(call->errors), [&](int number) {
            const char* const text = number > 0 ? std::strerror(number) : "";
            return number > 0 && name == QLatin1String(strerrorname_np(number)) && error.contains(text);
        });
    }

    QString RunAgain()
    {
        const Outcome outcome = Run(-1, 0);
        if (outcome.status != 0)
            return QStringLiteral("the next run fails: ") + QString::fromUtf8(outcome.error);
        if (mScenario.look(mSandbox.GetPath()) != mNew)
            return QStringLiteral("the next run leads to:\n") + mScenario.look(mSandbox.GetPath());
        const QStringList names = ListNames(mScenario.ignored);
        if (names != mNewNames)
            return QStringLiteral("after the next run there is:\n") + names.join(QLatin1Char('\n'));
        return QString();
    }

    const FaultScenario& mScenario;
    const Sandbox mSandbox;
    const QTemporaryDir mTemplate;
    QString mOld, mNew;
    QStringList mOldNames, mNewNames;
};
}  // namespace

QStringList ListCalls(const FaultScenario& scenario)
{
    return FaultRun(scenario).RunWhole();
}

void RunFaultScenario(const FaultScenario& scenario)
{
    const bool isWhole = scenario.takesEveryError || qgetenv("HOPBOX_FAULTS") == "all";
    FaultRun run(scenario);
    const QStringList calls = run.RunWhole();
    ASSERT_FALSE(calls.isEmpty()) << "No call was seen: is the library preloaded?";
    int runs = 0;
    for (int number = 1; number <= calls.size(); number += isWhole ? 1 : scenario.stride) {
        const FaultCall* const call = FindCall(calls.at(number - 1));
        ASSERT_NE(call, nullptr) << calls.at(number - 1).toStdString();
        const int errors = CountErrors(*call);
        for (int index = isWhole ? 0 : number % errors; index < errors; index += isWhole ? 1 : errors) {
            QString fault;
            const QString wrong = run.RunWithFault(number, index, fault);
            EXPECT_TRUE(wrong.isEmpty())
                << fault.toStdString() << " (call " << number << "): " << wrong.toStdString();
            ++runs;
        }
    }
    testing::Test::RecordProperty("calls", calls.size());
    testing::Test::RecordProperty("runs", runs);
    std::printf("%s: %d calls, %d runs\n", scenario.name, calls.size(), runs);
}
