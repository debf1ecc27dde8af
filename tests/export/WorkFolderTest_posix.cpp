#include "ExportFixture.h"
#include "export/WorkFolder.h"
#include "foundation/core/GException.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SecondUser.h"

using WorkFolderTest = ExportFixture;

// Makes a folder as somebody who may write where everybody may.
CHILD_ROLE(MakeFolderAsSecondUser)
{
    return BecomeSecondUser() && QDir().mkdir(arguments.at(0)) ? 0 : 1;
}

// Both levels lie where others may write, so that somebody may have made them before.
TEST_F(WorkFolderTest, ALinkOrSomebodyElsesFolderIsRefused)
{
    const GPathName folder = WorkFolder::GetPath("Press"_q);
    const QString elsewhere = GetSandbox().GetPath("elsewhere"_q);
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    for (const GPathName& level : {folder.GetParent(), folder}) {
        const QString path = level.GetNativePath();
        ASSERT_TRUE(QDir().mkpath(level.GetParent().GetNativePath()));
        ASSERT_TRUE(QFile::link(elsewhere, path));
        EXPECT_THROW(WorkFolder::Make(folder), GException) << path.toStdString();
        EXPECT_TRUE(QDir(elsewhere).isEmpty());
        ASSERT_TRUE(QFile::remove(path));
        if (!CanBecomeSecondUser())
            continue;
        const auto everybody = QFileDevice::Permissions(0x7777);
        ASSERT_TRUE(QFile::setPermissions(level.GetParent().GetNativePath(), everybody));
        ASSERT_TRUE(QFile::setPermissions(GetSandbox().GetPath(), everybody));
        ASSERT_EQ(ChildProcess("MakeFolderAsSecondUser"_q, {path}).WaitForExit(), 0);
        EXPECT_THROW(WorkFolder::Make(folder), GException) << path.toStdString();
        ASSERT_TRUE(QDir().rmdir(path));
    }
    WorkFolder::Make(folder);
    EXPECT_TRUE(QDir(folder.GetNativePath()).exists());
}
