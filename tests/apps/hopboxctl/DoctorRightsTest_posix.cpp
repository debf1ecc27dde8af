#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

// The rights of folders, which Windows keeps in another way.
TEST_F(CommandTest, TheDoctorClosesFoldersThatOthersMayChange)
{
    ASSERT_EQ(Create("Press"_q), 0);
    PrinterProcessor receiver(mSandbox, {});
    const QString folder = GetPath("AppData/Morvane/Hopbox/Cache/Settings");
    const QFileDevice::Permissions before = QFile::permissions(folder);
    ASSERT_TRUE(QFile::setPermissions(folder, before | QFileDevice::WriteOther));
    EXPECT_EQ(Run({"doctor"_q}), 1);
    EXPECT_TRUE(mOutput.contains("problem: Others may change the folder") &&
                mOutput.contains("    chmod go-w '"));
    EXPECT_EQ(Run({"doctor"_q, "--fix"_q}), 0);
    EXPECT_TRUE(mOutput.startsWith("mended: "));
    EXPECT_EQ(QFile::permissions(folder), before);
    EXPECT_EQ(Run({"doctor"_q}), 0);
}
