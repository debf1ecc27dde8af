#include "foundation/ipc/GPPIPCManager.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QElapsedTimer>
#include <QJsonDocument>

#include <chrono>
#include <csignal>
#include <thread>

// Not under Wine: there is no console to stop a process from, and a pipe whose reader has ended still takes
// what is written.
TEST(PrinterProcessor, DeregistersWhenItIsStoppedOrUnheard)
{
    const Sandbox sandbox;
    const auto getState = [](const PrinterProcessor& receiver) {
        return GPPIPCManager::Get()->GetReceiverState(receiver.GetProcessID());
    };
    for (const int signal : {SIGTERM, SIGINT}) {
        PrinterProcessor receiver(sandbox, {});
        EXPECT_EQ(getState(receiver), GPPIPCState::Reachable);
        kill(static_cast<pid_t>(receiver.GetProcessID()), signal);
        EXPECT_EQ(receiver.WaitForExit(), 0);
        EXPECT_EQ(getState(receiver), GPPIPCState::NoReceiver);
    }
    PrinterProcessor unheard(sandbox, {}, PrinterProcessor::Output::Lost);
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, "/a.pdf"_q));
    EXPECT_EQ(unheard.WaitForExit(), 1);
    EXPECT_EQ(getState(unheard), GPPIPCState::NoReceiver);
}

TEST(HandOff, ReportNamesTheReceiverThatHoldsUp)
{
    const Sandbox sandbox;
    const PrinterProcessor stopped(sandbox, {});
    kill(static_cast<pid_t>(stopped.GetProcessID()), SIGSTOP);
    const QString longPath(150000, QLatin1Char('x'));
    HopboxHandOff::Report report;
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, longPath, &report));
    EXPECT_FALSE(HopboxHandOff::SubmitJob("Press"_q, longPath, &report));
    kill(static_cast<pid_t>(stopped.GetProcessID()), SIGCONT);
    EXPECT_EQ(report.deliveries.back().process, stopped.GetProcessID());
    EXPECT_EQ(report.reason,
              "Process %1: The message could not be posted: the receiver's queue stayed busy."_q.arg(
                  stopped.GetProcessID()));
}

// Far more than is copied before the process sees the stop.
TEST(PrinterProcessor, StopIsHeededWhileAJobIsCopiedWhichTheNextStartTakes)
{
    const Sandbox sandbox;
    const QString job = sandbox.GetPath("a.pdf"_q);
    const QString inbox = sandbox.GetPath("in"_q);
    const QDir copies(inbox + "/.printer-processor/copies"_q);
    QFile file(job);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64(15) << 30));
    {
        PrinterProcessor receiver(sandbox, {"--inbox"_q, inbox});
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
        while (copies.isEmpty())
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        // Accepting goes on meanwhile.
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
        kill(static_cast<pid_t>(receiver.GetProcessID()), SIGTERM);
        EXPECT_EQ(receiver.WaitForExit(), 0);
    }
    EXPECT_TRUE(copies.isEmpty());
    EXPECT_EQ(QDir(inbox).entryList(QDir::Files), QStringList());
    EXPECT_TRUE(file.resize(3));
    PrinterProcessor next(sandbox, {"--inbox"_q, inbox});
    for (int count = 0; count < 2; ++count)
        EXPECT_EQ(ReadFile(next.ReadLine().value("saved"_q).toString()), QByteArray(3, 0));
}

TEST(PrinterProcessor, StopIsHeededWhileItWaitsForAnInboxOfAnother)
{
    const Sandbox sandbox;
    const QString inbox = sandbox.GetPath("in"_q);
    const PrinterProcessor first(sandbox, {"--inbox"_q, inbox});
    QProcess second;
    second.start(GetProgramPath("PrinterProcessorWin.exe"), {"--inbox"_q, inbox});
    // The second has nothing to wait for but the lock.
    EXPECT_FALSE(second.waitForFinished(500));
    QElapsedTimer timer;
    timer.start();
    second.terminate();
    EXPECT_TRUE(second.waitForFinished());
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0);
}

TEST(PrinterProcessor, CountIsExactAndTheRestIsForTheNextStart)
{
    const Sandbox sandbox;
    const QString inbox = sandbox.GetPath("in"_q);
    const QString job = sandbox.GetPath("a.pdf"_q);
    WriteFile(job, "1");
    {
        PrinterProcessor receiver(sandbox, {"--inbox"_q, inbox, "--count"_q, "2"_q});
        kill(static_cast<pid_t>(receiver.GetProcessID()), SIGSTOP);
        for (int count = 0; count < 5; ++count)
            EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
        kill(static_cast<pid_t>(receiver.GetProcessID()), SIGCONT);
        EXPECT_EQ(receiver.WaitForExit(), 0);
    }
    EXPECT_EQ(QDir(inbox).entryList(QDir::Files).size(), 2);
    PrinterProcessor next(sandbox, {"--inbox"_q, inbox, "--count"_q, "1"_q});
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
    EXPECT_EQ(next.WaitForExit(), 0);
    EXPECT_EQ(QDir(inbox).entryList(QDir::Files).size(), 6);
}

// What was sent to a receiver of one Hopbox was taken rightly, whatever its next start takes.
TEST(PrinterProcessor, WhatWasSentBeforeIsTakenByAStartForOtherHopboxes)
{
    const Sandbox sandbox;
    const QString job = sandbox.GetPath("a.pdf"_q);
    const QStringList call = {"--inbox"_q, sandbox.GetPath("in"_q), "--hopbox"_q};
    WriteFile(job, "1");
    {
        PrinterProcessor first(sandbox, call + QStringList("Press"_q));
        kill(static_cast<pid_t>(first.GetProcessID()), SIGSTOP);
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
        first.Kill();
    }
    PrinterProcessor next(sandbox, call + QStringList("Other"_q));
    EXPECT_EQ(ReadFile(next.ReadLine().value("saved"_q).toString()), "1");
}

// On a disk that is full until room is made.
CHILD_ROLE(FillInbox)
{
    const QString root = qEnvironmentVariable("MORVANE_ROOT");
    const QString inbox = root + "/in"_q;
    if (!QDir().mkpath(inbox) || !MountSmallDisk(inbox, 2000000))
        return 77;
    WriteFile(root + "/a.pdf"_q, QByteArray(1000000, 'a'));
    WriteFile(inbox + "/filler"_q, QByteArray(1500000, 'f'));
    QProcess receiver;
    receiver.start(GetProgramPath("PrinterProcessorWin.exe"), {"--inbox"_q, inbox, "--count"_q, "2"_q});
    receiver.setReadChannel(QProcess::StandardError);
    while (!receiver.canReadLine() && receiver.waitForReadyRead()) {
    }
    receiver.setReadChannel(QProcess::StandardOutput);
    const auto readLine = [&] {
        while (!receiver.canReadLine() && receiver.waitForReadyRead()) {
        }
        return QJsonDocument::fromJson(receiver.readLine()).object();
    };
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, root + "/a.pdf"_q));
    const QJsonObject refusal = readLine();
    EXPECT_TRUE(refusal.value("waiting"_q).toBool());
    EXPECT_TRUE(refusal.value("error"_q).toString().contains("No space left on device"_q));
    EXPECT_TRUE(QFile::remove(inbox + "/filler"_q));
    EXPECT_EQ(ReadFile(readLine().value("saved"_q).toString()), QByteArray(1000000, 'a'));
    receiver.terminate();
    receiver.waitForFinished();
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(PrinterProcessor, JobWaitsForRoomOnTheDisk)
{
    const Sandbox sandbox;
    const int status = ChildProcess("FillInbox"_q, {}).WaitForExit();
    if (status == 77)
        GTEST_SKIP() << "This user may not mount a disk.";
    EXPECT_EQ(status, 0);
}
