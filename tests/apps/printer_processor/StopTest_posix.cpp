#include "foundation/ipc/GPPIPCManager.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"

#include <gtest/gtest.h>

#include <csignal>

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
