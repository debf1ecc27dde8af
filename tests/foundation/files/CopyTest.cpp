#include "FileHandlerFixture.h"
#include "foundation/files/FileSystem.h"

TEST_F(FileHandlerTest, CopyHasContentAndDate)
{
    const QDateTime date(QDate(2001, 2, 3), QTime(4, 5, 6), Qt::UTC);
    QFile file(Make("x", QByteArray(300000, 'x')));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(date, QFileDevice::FileModificationTime));
    file.close();
    EXPECT_TRUE(mHandler.copyFile(At("x"), At("y")));
    EXPECT_EQ(ReadFile(At("y")), QByteArray(300000, 'x'));
    Morvane::FileSystem::DateTimes times;
    EXPECT_TRUE(mHandler.GetDateTimeInfo(At("y"), &times));
    EXPECT_EQ(times.modified, date);
    EXPECT_FALSE(mHandler.GetDateTimeInfo(At("missing"), &times));
    EXPECT_EQ(Errors().find("GetDateTimeInfo|Cannot get datetime info for missing: "), 0U);
}

TEST_F(FileHandlerTest, PathsBeyondTheOldLimitWork)
{
    const QByteArray deep = (QByteArray(60, 'p') + '/').repeated(5);
    const QByteArray file = "from/" + deep + "file", other = "from/" + deep + "other";
    Make(file, "deep");
    Make("from/" + deep + "._file");
    ASSERT_GT(At(file.constData()).size(), 260);
    EXPECT_TRUE(mHandler.renameFile(At(file.constData()), At(other.constData())));
    EXPECT_TRUE(mHandler.copyFolder(At("from"), At("to")));
    qint64 count = 0;
    EXPECT_TRUE(mHandler.getFileCount(At("to"), &count));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(ReadFile(At(("to/" + deep + "other").constData())), "deep");
    EXPECT_TRUE(mHandler.removeFolder(At("from")));
    EXPECT_TRUE(mHandler.cleanupFolder(At("to")));
    EXPECT_EQ(Tree(), "to/");
}

TEST_F(FileHandlerTest, OwnerGetsRightsOnEverythingInsideAndReadOnlyFilesGo)
{
    QFile::setPermissions(Make("folder/sub/file"), QFile::ReadOwner);
    EXPECT_TRUE(mHandler.setRWPermissions(At("folder")));
    EXPECT_TRUE(QFile::permissions(At("folder/sub/file")).testFlag(QFile::WriteOwner));
    EXPECT_FALSE(mHandler.setRWPermissions(At("missing")));
    EXPECT_EQ(Errors(), "setRWPermissions|Failed to set permissions for the file or folder: missing");
    QFile::setPermissions(At("folder/sub/file"), QFile::ReadOwner);
    EXPECT_TRUE(mHandler.removeFolder(At("folder")));
    EXPECT_EQ(Tree(), "");
}

TEST_F(FileHandlerTest, CleanupBySelectionLeavesTheRest)
{
    MakeAll("work/a.PDF work/b.pdf work/c.txt work/d.pdf/inside work/sub/e.pdf");
    EXPECT_TRUE(mHandler.cleanupFolder(At("work"), {"*.pdf"_q}));
    EXPECT_EQ(Tree(), "work/c.txt work/sub/e.pdf");
}
