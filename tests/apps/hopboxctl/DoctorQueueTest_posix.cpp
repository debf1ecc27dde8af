#include "foundation/system/GSessionInfo.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

#include <csignal>

// A receiver that is stopped takes nothing; what was sent waits after its end.
TEST_F(CommandTest, DoctorSeesAQueueThatNobodyEmpties)
{
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, GetPath("in")});
    kill(static_cast<pid_t>(receiver.GetProcessID()), SIGSTOP);
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, QString(200000, QLatin1Char('x'))));
    EXPECT_EQ(Run({"doctor"_q, "--json"_q}), 0);
    EXPECT_EQ(GetResult().toArray(), QJsonArray()) << "three quarters are not full";
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, QString(20000, QLatin1Char('x'))));
    EXPECT_EQ(Run({"doctor"_q, "--json"_q}), 1);
    EXPECT_EQ(GetResult().toArray().at(0)["kind"_q].toString(), "queue-full"_q);
    receiver.Kill();
    EXPECT_EQ(Run({"doctor"_q, "--fix"_q, "--json"_q}), 1);
    EXPECT_EQ(GetResult().toArray().at(0)["kind"_q].toString(), "jobs-wait"_q);
    EXPECT_FALSE(GetResult().toArray().at(0)["canBeFixed"_q].toBool());
}

TEST_F(CommandTest, DoctorSeesNamesWithoutAQueue)
{
    const PrinterProcessor receiver(mSandbox, {});
    const QString stray = GSessionInfo::GetObjectNamePrefix() + "201_PP_4711_1"_q;
    WriteFile(stray + "_L"_q, "a lock");
    WriteFile(stray + "_S"_q, "a semaphore");
    EXPECT_EQ(Run({"doctor"_q}), 0);
    EXPECT_TRUE(
        mOutput.startsWith("note: Names are left of receivers that have ended, without a queue: 1.\n    "
                           "hopboxctl channel clean\n"));
    EXPECT_EQ(Run({"doctor"_q, "--fix"_q}), 0);
    EXPECT_TRUE(mOutput.startsWith("mended: "));
    EXPECT_FALSE(QFile::exists(stray + "_L"_q) || QFile::exists(stray + "_S"_q));
    EXPECT_EQ(Run({"doctor"_q}), 0);
    EXPECT_EQ(mOutput, "All is well.\n");
}

TEST_F(CommandTest, DoctorTellsWhatTheHostCanNotDo)
{
    WriteFile(GetPath("a.joboptions"),
              "<< /ColorImageDownsampleType /Bicubic /Unheard 1 >> setdistillerparams");
    ASSERT_EQ(Run({"create"_q, "Press"_q, "--job-options"_q, "a.joboptions"_q}), 0);
    const PrinterProcessor receiver(mSandbox, {});
    EXPECT_EQ(Run({"doctor"_q}), 0);
    EXPECT_TRUE(
        mOutput.startsWith("note: Hopbox \"Press\": layout-host can't do all that the job options ask: "
                           "ColorImageDownsampleType (approximated).\n"));
}
