#include "foundation/system/GSessionInfo.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

#include <csignal>

TEST_F(CommandTest, HandOffTellsOfADamagedQueueWithItsOwnCode)
{
    const PrinterProcessor receiver(mSandbox, {"--inbox"_q, GetPath("in")});
    kill(static_cast<pid_t>(receiver.GetProcessID()), SIGSTOP);
    QDir channel(QFileInfo(GSessionInfo::GetObjectNamePrefix()).path());
    for (const QString& name : channel.entryList({"*_201_PP_%1_*"_q.arg(receiver.GetProcessID())})) {
        QFile file(channel.filePath(name));
        ASSERT_TRUE(name.endsWith("_L"_q) || name.endsWith("_S"_q) ||
                    (file.open(QIODevice::ReadWrite) && file.write("none") == 4));
    }
    HopboxHandOff::Report report;
    EXPECT_FALSE(HopboxHandOff::SubmitJob("Press"_q, GetPath("a.pdf"), &report));
    // Others of the same image name may run on this machine, which belong to other roots.
    for (const HopboxHandOff::Delivery& delivery : report.deliveries) {
        EXPECT_EQ(delivery.code, delivery.process == receiver.GetProcessID() ? 40154 : 40153)
            << delivery.reason.toStdString();
    }
}

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
    EXPECT_TRUE(mOutput.contains("  ended, jobs wait  "));
    EXPECT_EQ(Run({"channel"_q, "clean"_q, "--json"_q}), 0);
    EXPECT_EQ(GetResult()["removed"_q].toInt(), 1) << "the lock";
    EXPECT_FALSE(QFile::exists(channel + "_4711_1_L"_q));
    EXPECT_EQ(Run({"channel"_q, "list"_q}), 0);
    EXPECT_TRUE(mOutput.contains("jobs wait"));
    EXPECT_EQ(Run({"channel"_q, "clean"_q, "--with-jobs"_q}), 0);
    EXPECT_EQ(mOutput, "1 removed.\n");
    EXPECT_EQ(QDir(QFileInfo(channel).path()).entryList(QDir::Files), QStringList());
}
