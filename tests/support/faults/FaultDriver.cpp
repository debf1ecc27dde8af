#include "tests/support/faults/FaultDriver.h"

#include "tests/support/TestFiles.h"
#include "tests/support/faults/FaultCalls.h"
#include "tests/support/faults/ScenarioRun.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace
{
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

// Whether an error names the system's reason for the call that failed.
bool TellsReason(const FaultScenario& scenario, const QByteArray& error, const QString& fault)
{
    const QString name = fault.section(QLatin1Char(' '), 1, 1);
    const FaultCall* const call = FindCall(fault);
    if (call == nullptr || !scenario.tellsReason)
        return call != nullptr && !error.isEmpty();
    return std::any_of(std::begin(call->errors), std::end(call->errors), [&](int number) {
        const char* const text = number > 0 ? std::strerror(number) : "";
        return number > 0 && name == QLatin1String(strerrorname_np(number)) && error.contains(text);
    });
}

// Runs of a scenario in which the preloaded library counts the calls and makes one fail.
class PreloadedRun
{
public:
    explicit PreloadedRun(const FaultScenario& scenario) : mRun(scenario) {}

    // The run without a fault, which also tells what calls there are.
    QStringList RunWhole()
    {
        const ScenarioRun::Outcome outcome = Run(0, 0);
        EXPECT_EQ(outcome.status, 0) << outcome.error.toStdString();
        mRun.NoteNew();
        return ReadReport();
    }

    // Gives what is wrong after a run in which a call failed; empty when the promise was kept.
    QString RunWithFault(int number, int index, QString& fault)
    {
        const ScenarioRun::Outcome outcome = Run(number, index);
        fault = ReadReport().value(0, QStringLiteral("no call failed"));
        QString wrong = mRun.JudgeState(outcome);
        if (wrong.isEmpty() && outcome.status != 0 && !TellsReason(mRun.GetScenario(), outcome.error, fault))
            wrong = QStringLiteral("the reason is not told: ") + QString::fromUtf8(outcome.error);
        if (wrong.isEmpty())
            wrong = mRun.JudgeNames();
        return wrong.isEmpty() ? mRun.RunAgain() : wrong;
    }

private:
    ScenarioRun::Outcome Run(int number, int index)
    {
        mRun.PutBack();
        QFile::remove(GetReport());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LD_PRELOAD"),
                           QCoreApplication::applicationDirPath() + QStringLiteral("/preloaded_faults.so"));
        environment.insert(QLatin1String(cFaultRoot), mRun.GetRoot());
        environment.insert(QLatin1String(cFaultNumber), QString::number(number));
        environment.insert(QLatin1String(cFaultIndex), QString::number(index));
        environment.insert(QLatin1String(cFaultReport), GetReport());
        return mRun.Run(environment);
    }

    QString GetReport() const { return mRun.GetOwnFolder() + QStringLiteral("/report"); }

    QStringList ReadReport() const
    {
        return QString::fromUtf8(ReadFile(GetReport())).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    ScenarioRun mRun;
};
}  // namespace

QStringList ListCalls(const FaultScenario& scenario)
{
    return PreloadedRun(scenario).RunWhole();
}

void RunFaultScenario(const FaultScenario& scenario)
{
    const bool isWhole = scenario.takesEveryError || qgetenv("HOPBOX_FAULTS") == "all";
    PreloadedRun run(scenario);
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
