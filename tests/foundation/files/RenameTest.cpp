#include "FileHandlerFixture.h"

TEST_F(FileHandlerTest, RenamedFileTakesItsCompanionAlong)
{
    for (const bool isOneVolume : {true, false}) {
        mHandler.isOneVolume = isOneVolume;
        Make("from/x.pdf", "data");
        Make("from/._x.pdf", "meta");
        QDir().mkpath(At("to"));
        EXPECT_TRUE(mHandler.renameFile(At("from/x.pdf"), At("to/y.pdf")));
        EXPECT_EQ(Tree(), "from/ to/._y.pdf to/y.pdf");
        EXPECT_EQ(ReadFile(At("to/y.pdf")) + ReadFile(At("to/._y.pdf")), "datameta");
        EXPECT_TRUE(mHandler.cleanupFolder(At("to")));
    }
}

TEST_F(FileHandlerTest, RenameReplacesNothing)
{
    struct Case
    {
        const char* source;
        const char* destination;
        const char* taken;
    };
    for (const Case& entry : {Case{"a", "b", "b"}, Case{"a", "c", "._c"}, Case{"a", "folder", "folder"}}) {
        Make("a", "a");
        Make("._a", "._a");
        Make("b", "b");
        Make("._c", "._c");
        Make("folder/x");
        EXPECT_FALSE(mHandler.rename(At(entry.source), At(entry.destination))) << entry.destination;
        EXPECT_EQ(Tree(), "._a ._c a b folder/x") << entry.destination;
        EXPECT_EQ(Errors(), "FileHandler::renameFile|Can't rename file, a file with the same name existed: " +
                                std::string(entry.taken));
    }
    EXPECT_FALSE(mHandler.rename(At("folder"), At("b")));
    EXPECT_EQ(Errors(), "FileHandler::renameFolder|Destination directory already exists: b");
    EXPECT_FALSE(mHandler.renameFile(At("missing"), At("new")));
    EXPECT_EQ(mHandler.attempts, 0);
}

TEST_F(FileHandlerTest, RenameToAnotherCaseAndToItselfWork)
{
    MakeAll({"name.PDF", "._name.PDF"});
    EXPECT_TRUE(mHandler.renameFile(At("name.PDF"), At("name.pdf")));
    EXPECT_EQ(Tree(), "._name.pdf name.pdf");
    EXPECT_TRUE(mHandler.renameFile(At("name.pdf"), At("name.pdf")));
    EXPECT_EQ(Tree(), "._name.pdf name.pdf");
}

TEST_F(FileHandlerTest, FileMayTakeItsCompanionsPlace)
{
    Make("x", "data");
    Make("._x", "meta");
    EXPECT_TRUE(mHandler.renameFile(At("x"), At("._x")));
    EXPECT_EQ(Tree(), "._x");
    EXPECT_EQ(ReadFile(At("._x")), "data");
}

TEST_F(FileHandlerTest, RenameOutlastsWhatPasses)
{
    for (const auto& [source, line] :
         {Texts{"file", "FileHandler::renameFile|Failed to rename file."},
          Texts{"folder", "FileHandler::renameFolder|Failed to rename folder."}}) {
        MakeAll({"file", "folder/inside"});
        mHandler.attempts = 0;
        mHandler.afterAttempt = nullptr;
        EXPECT_FALSE(mHandler.rename(At(source), At("later/new")));
        EXPECT_EQ(mHandler.attempts, 20);
        EXPECT_TRUE(mHandler.lastAttempt.startsWith(
            QLatin1String(line) +
            QLatin1String(" Will try again after an interval. ( Attempt number 20) : ") + At(source)))
            << mHandler.lastAttempt.toStdString();

        mHandler.attempts = 0;
        mHandler.afterAttempt = [this](int attempt) {
            if (attempt == 4)
                QDir().mkpath(At("later"));
        };
        EXPECT_TRUE(mHandler.rename(At(source), At("later/new")));
        EXPECT_EQ(mHandler.attempts, 4);
        EXPECT_TRUE(mHandler.removeFolder(At("later")));
    }
}

TEST_F(FileHandlerTest, FolderGoesToAnotherVolumeWholeOrNotAtAll)
{
    mHandler.isOneVolume = false;
    Make("from/a/x", "x");
    Make("from/._x");
    EXPECT_TRUE(mHandler.renameFolder(At("from"), At("other/to")));
    EXPECT_EQ(Tree(), "other/to/._x other/to/a/x");
    Make("taken/y");
    EXPECT_FALSE(mHandler.renameFolder(At("other/to"), At("taken")));
    EXPECT_EQ(Tree(), "other/to/._x other/to/a/x taken/y");
}

TEST_F(FileHandlerTest, RenameThatKeepsTheOldNameIsNoticed)
{
    class Forgetful : public WatchedHandler
    {
    public:
        bool rename(const QString& source, const QString& destination) override
        {
            return copyFile(source, destination);
        }
    };
    Make("a");
    EXPECT_TRUE(mHandler.renameFE(At("a"), At("b")));
    Forgetful handler;
    handler.setLogInterface(&mLog);
    EXPECT_FALSE(handler.renameFE(At("b"), At("c")));
    EXPECT_EQ(Errors(), "FileHandler::renameFE|File still exists after successful renaming: b");
    EXPECT_TRUE(mHandler.renameAddPrefix(At("b"), "old "_q));
    EXPECT_EQ(Tree(), "c old b");
}

TEST_F(FileHandlerTest, MovedContentLeavesWhatIsTakenThere)
{
    Make("from/a", "new");
    Make("from/._a", "new");
    MakeAll({"from/b", "from/sub/c"});
    Make("to/a", "old");
    EXPECT_FALSE(mHandler.moveFolderContent(At("from"), At("to")));
    EXPECT_EQ(Tree(), "from/._a from/a to/a to/b to/sub/c");
    EXPECT_EQ(ReadFile(At("to/a")), "old");
    EXPECT_TRUE(mHandler.moveFolderContent(At("from"), At("deep/new")));
    EXPECT_EQ(Tree(), "deep/new/._a deep/new/a from/ to/a to/b to/sub/c");
    EXPECT_FALSE(mHandler.moveFolderContent(At("to"), At("to/sub")));
    EXPECT_TRUE(mHandler.moveFile(At("to/b"), At("made/for/b")));
    EXPECT_TRUE(QFile::exists(At("made/for/b")));
}

TEST_F(FileHandlerTest, MovedFolderMergesIntoTheOneThatIsThere)
{
    Make("from/sub/a", "new");
    MakeAll({"from/sub/b", "from/other/c"});
    Make("to/sub/a", "old");
    EXPECT_FALSE(mHandler.moveFolderData(At("from"), At("to")));
    EXPECT_EQ(Tree(), "from/sub/a to/other/c to/sub/a to/sub/b");
    EXPECT_TRUE(mHandler.removeFile(At("to/sub/a")));
    EXPECT_TRUE(mHandler.moveFolderData(At("from"), At("to")));
    EXPECT_EQ(Tree(), "to/other/c to/sub/a to/sub/b");
    EXPECT_EQ(ReadFile(At("to/sub/a")), "new");
}
