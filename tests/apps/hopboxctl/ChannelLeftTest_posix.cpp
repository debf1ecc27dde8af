#include "foundation/system/GSessionInfo.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

#include <csignal>

// On Windows nothing is left under a name.
TEST_F(CommandTest, JobsThatWaitStayUntilSomebodySaysOtherwise)
{
    const QString channel = GSessionInfo::GetObjectNamePrefix() + "201_PP"_q;
    WriteFile(GetPath("a.pdf"), "1");
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, GetPath("in")});
    kill(static_cast<pid_t>(receiver.GetProcessID()), SIGSTOP);
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, GetPath("a.pdf")));
    receiver.Kill();
    WriteFile(channel + "_4711_1_L"_q, "a lock without a queue");
    EXPECT_EQ(Run({"channel"_q, "list"_q}), 0);
    EXPECT_TRUE(mOutput.contains("  ended, jobs wait  ")) << mOutput.constData();
    EXPECT_EQ(Run({"channel"_q, "clean"_q, "--json"_q}), 0);
    EXPECT_EQ(GetResult()["removed"_q].toInt(), 1) << "the lock";
    EXPECT_FALSE(QFile::exists(channel + "_4711_1_L"_q));
    EXPECT_EQ(Run({"channel"_q, "list"_q}), 0);
    EXPECT_TRUE(mOutput.contains("jobs wait")) << mOutput.constData();
    EXPECT_EQ(Run({"channel"_q, "clean"_q, "--with-jobs"_q}), 0);
    EXPECT_EQ(mOutput, "1 removed.\n");
    EXPECT_EQ(QDir(QFileInfo(channel).path()).entryList(QDir::Files), QStringList());
}
