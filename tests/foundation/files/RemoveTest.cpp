#include "FileHandlerFixture.h"

#include <QRegularExpression>

TEST_F(FileHandlerTest, RemovedFileTakesOnlyItsOwnCompanionAlong)
{
    MakeAll({"x.pdf", "._x.pdf", "._._x.pdf", "x.pdf.txt"});
    EXPECT_TRUE(mHandler.removeFile(At("x.pdf")));
    EXPECT_EQ(Tree(), "._._x.pdf x.pdf.txt");
    Make("._x.pdf");
    EXPECT_TRUE(mHandler.removeFile(At("._x.pdf")));
    EXPECT_EQ(Tree(), "._._x.pdf x.pdf.txt");
    EXPECT_TRUE(mHandler.removeFile(At("never there")));
    EXPECT_EQ(mHandler.attempts, 0);
}

TEST_F(FileHandlerTest, FileThatStaysFailsAfterTwentyAttempts)
{
    Make("stays/inside");  // a folder can't be removed as a file
    EXPECT_FALSE(mHandler.removeFile(At("stays")));
    EXPECT_EQ(mHandler.attempts, 20);
    EXPECT_EQ(
        mHandler.lastAttempt,
        QLatin1String("FileHandler::removeFile|Failed to delete file. Will try again after an interval. ( "
                      "Attempt number 20) : ") +
            At("stays") + QLatin1String(". "));
    EXPECT_EQ(Errors(), "FileHandler::removeFile|Failed to remove file: stays");
}

TEST_F(FileHandlerTest, FileThatSomebodyElseRemovesCountsAsRemoved)
{
    QDir().mkpath(At("goes"));
    Make("._goes");
    mHandler.afterAttempt = [this](int attempt) {
        if (attempt == 3)
            QDir().rmdir(At("goes"));
    };
    EXPECT_TRUE(mHandler.removeFile(At("goes")));
    EXPECT_EQ(mHandler.attempts, 3);
    EXPECT_EQ(Tree(), "");
}

TEST_F(FileHandlerTest, FolderIsRemovedWithEverythingInIt)
{
    MakeAll({"top/a/b/c/file", "top/._file", "top/.hidden/x", "top/\u65E5\u672C \u00FC/y"});
    QDir().mkpath(At("top/empty"));
    QFile::setPermissions(Make("top/read only"), QFile::ReadOwner);
    Make("beside");
    EXPECT_TRUE(mHandler.removeFolder(At("top/")));
    EXPECT_EQ(Tree(), "beside");
    EXPECT_TRUE(mHandler.removeFolder(At("top")));
    EXPECT_EQ(Errors(), "");
}

TEST_F(FileHandlerTest, FolderWhoseContentResistsIsGoneFromItsName)
{
    MakeAll({"folder name/sub/stuck", "folder name/sub/other", "folder name/more"});
    mHandler.stuckName = "stuck"_q;
    EXPECT_FALSE(mHandler.removeFolder(At("folder name")));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\.~#~ name_del__[0-9a-f]{5}/sub/stuck$"))
                    .match(QString::fromStdString(Tree()))
                    .hasMatch())
        << Tree();
    const std::string errors = Errors();
    for (const char* message :
         {"Can't remove file: ", "Can't remove subfolder: ", "Failed to remove folder: "})
        EXPECT_NE(errors.find("FileHandler::removeFolder|" + std::string(message)), std::string::npos)
            << errors;
}

TEST_F(FileHandlerTest, FolderUnderAHiddenNameGetsNoSecondMark)
{
    const QString hidden = mHandler.createNameForDelete(At(".~#~abc_del__12345"));
    EXPECT_TRUE(
        QRegularExpression("^\\.~#~12345_del__[0-9a-f]{5}$"_q).match(QFileInfo(hidden).fileName()).hasMatch())
        << hidden.toStdString();
}

TEST_F(FileHandlerTest, CleanupKeepsTheFolderAndNamesWhatStays)
{
    MakeAll({"work/a/b", "work/.hidden", "work/stuck"});
    mHandler.stuckName = "stuck"_q;
    EXPECT_FALSE(mHandler.cleanupFolder(At("work")));
    EXPECT_EQ(Tree(), "work/stuck");
    EXPECT_EQ(Errors(),
              "FileHandler::cleanupFolder|File can not be removed: "
              "work/stuck");
    mHandler.stuckName.clear();
    EXPECT_TRUE(mHandler.cleanupFolder(At("work")));
    EXPECT_EQ(Tree(), "work/");
    EXPECT_FALSE(mHandler.cleanupFolder(At("missing")));
    EXPECT_EQ(Errors(), "FileHandler::cleanupFolder|Can't find folder: missing");
}

TEST_F(FileHandlerTest, CleanupBySelectionLeavesTheRest)
{
    for (const char* name : {"work/a.PDF", "work/b.pdf", "work/c.txt", "work/d.pdf/inside", "work/sub/e.pdf"})
        Make(name);
    EXPECT_TRUE(mHandler.cleanupFolder(At("work"), {"*.pdf"_q}));
    EXPECT_EQ(Tree(), "work/c.txt work/sub/e.pdf");
}
