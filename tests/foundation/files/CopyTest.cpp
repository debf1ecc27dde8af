#include "FileHandlerFixture.h"

using Morvane::FileSystem::DateTimes;

TEST_F(FileHandlerTest, CopyHasContentDateAndCompanion)
{
    const QDateTime date(QDate(2001, 2, 3), QTime(4, 5, 6), Qt::UTC);
    QFile file(Make("x", QByteArray(300000, 'x')));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(date, QFileDevice::FileModificationTime));
    file.close();
    Make("._x", "meta");
    EXPECT_TRUE(mHandler.copyFile(At("x"), At("y")));
    EXPECT_EQ(Tree(), "._x ._y x y");
    EXPECT_EQ(ReadFile(At("y")), QByteArray(300000, 'x'));
    DateTimes times;
    EXPECT_TRUE(mHandler.GetDateTimeInfo(At("y"), &times));
    EXPECT_EQ(times.modified, date);
    EXPECT_FALSE(mHandler.GetDateTimeInfo(At("missing"), &times));
    EXPECT_EQ(Errors().find("FileHandler::GetDateTimeInfo|Cannot get datetime info for missing: "), 0U);
}

TEST_F(FileHandlerTest, CopyThatCannotBeLeavesNothingBehind)
{
    struct Case
    {
        const char* source;
        const char* destination;
        const char* message;
    };
    Make("a", "a");
    Make("b", "b");
    Make("folder/x");
    const std::string before = Tree();
    for (const Case& entry :
         {Case{"missing", "new", "copyFile|File does not exists: missing"},
          Case{"a", "b", "copyFile|Can't copy file, a file with the same name existed: b"},
          Case{"a", "folder", "copyFile|Can't copy file, a file with the same name existed: folder"},
          Case{"a", "no folder/new", "copyFile|Can't copy file: a"},
          Case{"missing", "new/", "copyFolder|File or folder does not exists: missing"},
          Case{"folder", "b/", "copyFolder|Destination directory already exists: b"},
          Case{"folder", "b/new/", "copyFolder|Can't create destination dir: b"},
          Case{"folder", "folder/x/y/", "copyFolder|Can't copy dir: folder"}}) {
        const QString destination = At(entry.destination);
        const bool isFolder = QByteArray(entry.destination).endsWith('/');
        EXPECT_FALSE(isFolder ? mHandler.copyFolder(At(entry.source), destination)
                              : mHandler.copyFile(At(entry.source), destination));
        EXPECT_EQ(Errors(), "FileHandler::" + std::string(entry.message));
        EXPECT_EQ(Tree(), before) << entry.destination;
    }
}

TEST_F(FileHandlerTest, CopiedFolderIsWholeOrAbsent)
{
    Make("from/a/b/x", "x");
    MakeAll({"from/y", "from/._y", "from/._alone"});
    QDir().mkpath(At("from/empty"));
    EXPECT_TRUE(mHandler.copyFolder(At("from"), At("new/to")));
    EXPECT_EQ(Tree(),
              "from/._alone from/._y from/a/b/x from/empty/ from/y new/to/._alone "
              "new/to/._y new/to/a/b/x new/to/empty/ new/to/y");

    class Failing : public WatchedHandler
    {
    public:
        bool copyFile(const QString& source, const QString& destination) override
        {
            return !source.endsWith(QLatin1String("/y")) && FileHandler::copyFile(source, destination);
        }
    };
    Failing handler;
    handler.setLogInterface(&mLog);
    EXPECT_FALSE(handler.copyFolder(At("from"), At("second")));
    EXPECT_EQ(Tree().find("second"), std::string::npos);
    EXPECT_EQ(Tree().find(".~#~"), std::string::npos);
    EXPECT_NE(Errors().find("\nFileHandler::copyFolder|Can't copy dir: from"), std::string::npos);
}

TEST_F(FileHandlerTest, PathsBeyondTheOldLimitWork)
{
    const QByteArray part(60, 'p');
    const QByteArray deep = "from/" + part + '/' + part + '/' + part + '/' + part + '/' + part;
    Make((deep + "/file").constData(), "deep");
    Make((deep + "/._file").constData(), "meta");
    ASSERT_GT(At(deep.constData()).size(), 260);
    EXPECT_TRUE(mHandler.renameFile(At((deep + "/file").constData()), At((deep + "/other").constData())));
    EXPECT_TRUE(mHandler.copyFolder(At("from"), At("to")));
    qint64 count = 0;
    EXPECT_TRUE(mHandler.getFileCount(At("to"), &count));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(ReadFile(At((QByteArray(deep).replace("from", "to") + "/other").constData())), "deep");
    EXPECT_TRUE(mHandler.removeFolder(At("from")));
    EXPECT_TRUE(mHandler.cleanupFolder(At("to")));
    EXPECT_EQ(Tree(), "to/");
}

TEST_F(FileHandlerTest, OwnerGetsRightsOnEverythingInside)
{
    QFile::setPermissions(Make("folder/sub/file"), QFile::ReadOwner);
    EXPECT_TRUE(mHandler.setRWPermissions(At("folder")));
    EXPECT_TRUE(QFile::permissions(At("folder/sub/file")).testFlag(QFile::WriteOwner));
    EXPECT_FALSE(mHandler.setRWPermissions(At("missing")));
    EXPECT_EQ(Errors(),
              "FileHandler::setRWPermissions|Failed to set permissions for the file or "
              "folder: missing");
}
