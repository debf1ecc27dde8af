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
