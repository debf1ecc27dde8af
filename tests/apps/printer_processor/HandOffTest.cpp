#include "PrinterProcessor.h"

#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/system/PSystem.h"
#include "hopbox/HopboxHandOff.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using HopboxHandOff::OwnProcess;

static const GString cJob = QStringLiteral("/jobs/\u65E5\u672C \"1\"\\ \U0001F4E6.pdf");

static bool Submit()
{
    return HopboxHandOff::SubmitJob(QStringLiteral("Gr\u00F6\u00DFe"), cJob);
}

TEST(HandOff, TwoReceiversBothGetTheJobIntact)
{
    const Sandbox sandbox;
    PrinterProcessor first(sandbox, {QStringLiteral("--count"), QStringLiteral("2")});
    PrinterProcessor second(sandbox, {QStringLiteral("--count"), QStringLiteral("2")});
    EXPECT_TRUE(Submit());
    EXPECT_TRUE(HopboxHandOff::NotifyHopboxProcesses(OwnProcess::cLeaveOut));
    const QJsonObject job = {{QStringLiteral("kind"), 145},
                             {QStringLiteral("sender"), QCoreApplication::applicationPid()},
                             {QStringLiteral("UserName"), PSystem::GetLogonName()},
                             {QStringLiteral("JobPath"), cJob},
                             {QStringLiteral("PrinterName"), QStringLiteral("Gr\u00F6\u00DFe")},
                             {QStringLiteral("PortName"), QStringLiteral("10987")},
                             {QStringLiteral("CopyCount"), 1},
                             {QStringLiteral("PrinterID"), QString()},
                             {QStringLiteral("valid"), true}};
    for (PrinterProcessor* receiver : {&first, &second}) {
        EXPECT_EQ(receiver->ReadLine(), job);
        EXPECT_EQ(receiver->ReadLine().value(QStringLiteral("kind")).toInt(), 146);
        EXPECT_EQ(receiver->WaitForExit(), 0);
    }
    EXPECT_FALSE(Submit());
}

TEST(HandOff, WhoCanNotBeReachedIsPassedOver)
{
    const Sandbox other;
    const Sandbox sandbox;
    EXPECT_FALSE(Submit());
    // One with the image name but without a receiver on this channel.
    const PrinterProcessor stranger(other, {});
    EXPECT_FALSE(Submit());
    PrinterProcessor killed(sandbox, {});
    PrinterProcessor alive(sandbox, {});
    killed.Kill();
    EXPECT_TRUE(Submit());
    EXPECT_EQ(alive.ReadLine().value(QStringLiteral("JobPath")).toString(), cJob);
    alive.Kill();
    EXPECT_FALSE(Submit());
    EXPECT_FALSE(HopboxHandOff::NotifyHopboxProcesses(OwnProcess::cInclude));
}

static GPPIPCState GetState(const PrinterProcessor& receiver)
{
    return GPPIPCManager::Get()->GetReceiverState(receiver.GetProcessID());
}

TEST(PrinterProcessor, DeregistersWhenItsTimeIsUpOrItsCountIsReached)
{
    const Sandbox sandbox;
    const struct
    {
        QStringList arguments;
        bool isSent;
        int status;
    } cases[] = {
        {{QStringLiteral("--count"), QStringLiteral("1")}, true, 0},
        {{QStringLiteral("--timeout"), QStringLiteral("0.5")}, false, 0},
        {{QStringLiteral("--timeout"), QStringLiteral("0.5"), QStringLiteral("--count"), QStringLiteral("9")},
         false,
         1},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.arguments.join(QLatin1Char(' ')).toStdString());
        PrinterProcessor receiver(sandbox, test.arguments);
        EXPECT_EQ(test.isSent && Submit(), test.isSent);
        EXPECT_EQ(receiver.WaitForExit(), test.status);
        EXPECT_EQ(GetState(receiver), GPPIPCState::NoReceiver);
    }
}

TEST(PrinterProcessor, DeregistersWhenItIsStoppedOrUnheard)
{
    if (!CanStopProcesses())
        GTEST_SKIP();
    const Sandbox sandbox;
    for (const StopKind kind : {StopKind::Terminate, StopKind::Interrupt}) {
        PrinterProcessor receiver(sandbox, {});
        EXPECT_EQ(GetState(receiver), GPPIPCState::Reachable);
        StopProcess(receiver.GetProcessID(), kind);
        EXPECT_EQ(receiver.WaitForExit(), 0);
        EXPECT_EQ(GetState(receiver), GPPIPCState::NoReceiver);
    }
    PrinterProcessor unheard(sandbox, {}, PrinterProcessor::Output::Lost);
    EXPECT_TRUE(Submit());
    EXPECT_EQ(unheard.WaitForExit(), 1);
    EXPECT_EQ(GetState(unheard), GPPIPCState::NoReceiver);
}

TEST(PrinterProcessor, WrongCallsAndUnusableInboxesEndAtOnce)
{
    const Sandbox sandbox;
    const struct
    {
        QStringList arguments;
        int status;
    } cases[] = {
        {{QStringLiteral("--inbox")}, 2},
        {{QStringLiteral("--inbox"), QString()}, 2},
        {{QStringLiteral("--count"), QStringLiteral("0")}, 2},
        {{QStringLiteral("--count"), QStringLiteral("1x")}, 2},
        {{QStringLiteral("--timeout"), QStringLiteral("-1")}, 2},
        {{QStringLiteral("--timeout"), QStringLiteral("nan")}, 2},
        {{QStringLiteral("--timeout"), QStringLiteral("1e300")}, 2},
        {{QStringLiteral("x")}, 2},
        {{QStringLiteral("--inbox"), GetPrinterProcessorPath()}, 1},
    };
    for (const auto& test : cases) {
        QProcess process;
        process.start(GetPrinterProcessorPath(), test.arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), test.status) << test.arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_FALSE(process.readAllStandardError().isEmpty());
    }
}
