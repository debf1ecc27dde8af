#include "tests/support/FolderRights.h"
#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

TEST_F(CommandTest, TheDoctorClosesFoldersThatOthersMayChange)
{
    ASSERT_EQ(Create("Press"_q), 0);
    PrinterProcessor receiver(mSandbox, {});
    const QString folder = GetPath("AppData/Morvane/Hopbox/Cache/Settings");
    ASSERT_TRUE(SetFolderRights(folder, L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)(A;OICI;FR;;;WD)"));
    EXPECT_EQ(Run({"doctor"_q}), 0) << mOutput.toStdString();
    ASSERT_TRUE(SetFolderRights(folder, L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)(A;OICI;FA;;;WD)"));
    EXPECT_EQ(Run({"doctor"_q}), 1);
    EXPECT_TRUE(mOutput.contains("problem: Others may change the folder") &&
                mOutput.contains("    icacls \""))
        << mOutput.toStdString();
    EXPECT_EQ(Run({"doctor"_q, "--fix"_q}), 0);
    EXPECT_TRUE(mOutput.startsWith("mended: "));
    EXPECT_EQ(Run({"doctor"_q}), 0);
}
