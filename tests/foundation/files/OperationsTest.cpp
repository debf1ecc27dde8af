#include "FileHandlerFixture.h"

#include <chrono>
#include <map>

class FileOperations : public FileHandlerTest
{
protected:
    // Calls an operation by its name, with paths below the sandbox: "renameFile from/a to/b".
    bool Run(const char* call)
    {
        using Handler = Morvane::FileHandler;
        static const std::map<QString, bool (Handler::*)(const QString&)> onOne = {
            {"removeFile"_q, &Handler::removeFile},
            {"removeFolder"_q, &Handler::removeFolder},
            {"cleanupFolder"_q, &Handler::cleanupFolder},
        };
        static const std::map<QString, bool (Handler::*)(const QString&, const QString&)> onTwo = {
            {"rename"_q, &Handler::rename},
            {"renameFE"_q, &Handler::renameFE},
            {"renameFile"_q, &Handler::renameFile},
            {"renameFolder"_q, &Handler::renameFolder},
            {"moveFile"_q, &Handler::moveFile},
            {"moveFolderContent"_q, &Handler::moveFolderContent},
            {"moveFolderData"_q, &Handler::moveFolderData},
            {"copyFile"_q, &Handler::copyFile},
            {"copyFolder"_q, &Handler::copyFolder},
        };
        const QStringList words = QString::fromUtf8(call).split(QLatin1Char(' '));
        const QString first = mSandbox.GetPath(words.at(1));
        if (words.size() == 2)
            return (mHandler.*onOne.at(words.front()))(first);
        return (mHandler.*onTwo.at(words.front()))(first, mSandbox.GetPath(words.at(2)));
    }

    void Clear() const
    {
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        for (const QFileInfo& left : QDir(mSandbox.GetPath()).entryInfoList(all))
            EXPECT_TRUE(QFile::remove(left.filePath()) || QDir(left.filePath()).removeRecursively());
    }

    struct Case
    {
        const char *before, *call, *after;
        std::string errors = {};  // the operation gives false exactly when there are some
    };

    void Check(const std::vector<Case>& cases)
    {
        for (const Case& entry : cases) {
            SCOPED_TRACE(entry.call);
            MakeAll(entry.before);
            EXPECT_EQ(Run(entry.call), entry.errors.empty());
            EXPECT_EQ(Errors(), entry.errors);
            EXPECT_EQ(Tree(), entry.after);
            Clear();
        }
    }
};

static const std::string cTaken = "renameFile|Can't rename file, a file with the same name existed: ";
static const std::string cNotCopied =
    "copyFolderPrivate|Failed to copy folder: from\ncopyFolder|Can't copy dir: from";

TEST_F(FileOperations, RemovalTakesWhatBelongsToIt)
{
    Check({
        {"x ._x ._._x x.txt", "removeFile x", "._._x x.txt"},
        {"._x ._._x", "removeFile ._x", "._._x"},
        {"", "removeFile missing", ""},
        {"stays/inside", "removeFile stays", "stays/inside", "removeFile|Failed to remove file: stays"},
        {"top/a/b/c/file top/._file top/.hidden/x top/\u65E5\u672C/y top/empty/ beside", "removeFolder top/",
         "beside"},
        {"", "removeFolder missing", ""},
        {"folder/sub/stuck folder/sub/other folder/more", "removeFolder folder",
         ".~#~older_del__#####/sub/stuck=folder/sub/stuck",
         "removeFolder|Can't remove file: .~#~older_del__#####/sub/stuck\n"
         "removeFolder|Can't remove subfolder: .~#~older_del__#####/sub\n"
         "removeFolder|Failed to remove folder: .~#~older_del__#####"},
        {"work/a/b work/.hidden", "cleanupFolder work", "work/"},
        {"work/a/b work/stuck", "cleanupFolder work", "work/stuck",
         "cleanupFolder|File can not be removed: work/stuck"},
        {"", "cleanupFolder missing", "", "cleanupFolder|Can't find folder: missing"},
    });
}

TEST_F(FileOperations, RenameTakesTheCompanionAlongAndReplacesNothing)
{
    Check({
        {"from/x from/._x to/", "renameFile from/x to/y", "from/ to/._y=from/._x to/y=from/x"},
        {"a ._a b", "rename a b", "._a a b", cTaken + "b"},
        {"a ._a ._c", "rename a c", "._a ._c a", cTaken + "._c"},
        {"a folder/x", "rename a folder", "a folder/x", cTaken + "folder"},
        {"folder/x b", "rename folder b", "b folder/x",
         "renameFolder|Destination directory already exists: b"},
        {"", "renameFile missing new", "", "renameFile|File does not exists: missing"},
        {"name.PDF ._name.PDF", "renameFile name.PDF name.pdf", "._name.pdf=._name.PDF name.pdf=name.PDF"},
        {"name ._name", "renameFile name name", "._name name"},
        {"x ._x", "renameFile x ._x", "._x=x"},
        {"a", "renameFE a b", "b=a"},
    });
    EXPECT_EQ(mHandler.attempts, 0);
}

TEST_F(FileOperations, RenameAcrossVolumesIsDoneWholeOrNotAtAll)
{
    mHandler.isOneVolume = false;
    Check({
        {"from/x from/._x to/", "renameFile from/x to/y", "from/ to/._y=from/._x to/y=from/x"},
        {"from/a/x from/._x", "renameFolder from other/to", "other/to/._x=from/._x other/to/a/x=from/a/x"},
        {"from/x taken/y", "renameFolder from taken", "from/x taken/y",
         "renameFolder|Destination directory already exists: taken"},
        {"stuck ._stuck", "renameFile stuck y", "._stuck stuck", "renameFile|Failed to rename file: ._stuck"},
        {"from/x from/stuck", "renameFolder from none/to", "from/stuck from/x none/",
         cNotCopied + "\nrenameFolder|Failed to copy folder: from"},
    });
}

TEST_F(FileOperations, MovesMergeAndLeaveWhatIsTakenThere)
{
    Check({
        {"from/a from/._a from/b from/sub/c to/a", "moveFolderContent from to",
         "from/._a from/a to/a to/b=from/b to/sub/c=from/sub/c", cTaken + "to/a"},
        {"from/a from/._a", "moveFolderContent from deep/new",
         "deep/new/._a=from/._a deep/new/a=from/a from/"},
        {"to/a", "moveFolderContent to to/sub", "to/a",
         "moveFolderContent|Can't create destination folder: to/sub"},
        {"b", "moveFile b made/for/b", "made/for/b=b"},
        {"from/sub/a from/sub/b from/other/c to/sub/a", "moveFolderData from to",
         "from/sub/a to/other/c=from/other/c to/sub/a to/sub/b=from/sub/b", cTaken + "to/sub/a"},
        {"from/sub/a to/other", "moveFolderData from to", "to/other to/sub/a=from/sub/a"},
    });
}

TEST_F(FileOperations, CopyIsWholeOrAbsent)
{
    const std::string taken = "copyFile|Can't copy file, a file with the same name existed: ";
    Check({
        {"x ._x", "copyFile x y", "._x ._y=._x x y=x"},
        {"", "copyFile missing new", "", "copyFile|File does not exists: missing"},
        {"a b", "copyFile a b", "a b", taken + "b"},
        {"a folder/x", "copyFile a folder", "a folder/x", taken + "folder"},
        {"a", "copyFile a none/new", "a", "copyFile|Can't copy file: a"},
        {"from/a/b/x from/y from/._y from/._alone from/empty/", "copyFolder from new/to",
         "from/._alone from/._y from/a/b/x from/empty/ from/y new/to/._alone=from/._alone "
         "new/to/._y=from/._y new/to/a/b/x=from/a/b/x new/to/empty/ new/to/y=from/y"},
        {"", "copyFolder missing new", "", "copyFolder|File or folder does not exists: missing"},
        {"folder/x b", "copyFolder folder b", "b folder/x",
         "copyFolder|Destination directory already exists: b"},
        {"folder/x b", "copyFolder folder b/new", "b folder/x", "copyFolder|Can't create destination dir: b"},
        {"folder/x", "copyFolder folder folder/x/y", "folder/x", "copyFolder|Can't copy dir: folder"},
        {"from/a from/stuck", "copyFolder from second", "from/a from/stuck", cNotCopied},
    });
}

TEST_F(FileOperations, WaitingIsToldAndCanBeCancelled)
{
    mHandler.setRetryPauses({std::chrono::hours(1), std::chrono::hours(1)});
    int questions = 0;
    mHandler.setCancelHook([&] { return ++questions % 3 == 0; });
    for (const char* call : {"removeFile folder", "rename file later/new"}) {
        MakeAll("folder/inside file");
        mHandler.attempts = 0;
        EXPECT_FALSE(Run(call));
        EXPECT_EQ(mHandler.attempts, 1);
        EXPECT_TRUE(
            mLog.TakeErrors().first().contains("Will try again after an interval. ( Attempt number 1)"_q));
    }
    EXPECT_EQ(questions, 6);
}

// Others rely on the pauses: twenty attempts outlast a lock of 9 s at a removal, one of 19 s at a rename.
TEST_F(FileOperations, RetriesOutlastWhatPasses)
{
    using std::chrono::milliseconds;
    EXPECT_EQ(Morvane::FileHandler::RetryPauses().remove, milliseconds(500));
    EXPECT_EQ(Morvane::FileHandler::RetryPauses().rename, milliseconds(1000));
    for (const char* call : {"removeFile goes", "rename file later/new", "rename folder later/new"}) {
        MakeAll("goes/ ._goes file folder/inside");
        mHandler.attempts = 0;
        mHandler.afterAttempt = nullptr;
        const bool isRemoval = QByteArray(call).startsWith("remove");
        mHandler.setRetryPauses({milliseconds(isRemoval ? 5 : 1), milliseconds(isRemoval ? 1 : 5)});
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(Run(call));
        EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(20 * 5));
        EXPECT_EQ(mHandler.attempts, 20);
        mHandler.attempts = 0;
        mHandler.afterAttempt = [this](int attempt) {
            if (attempt != 4)
                return;
            QDir().rmdir(At("goes"));
            QDir().mkpath(At("later"));
        };
        EXPECT_TRUE(Run(call));
        EXPECT_EQ(mHandler.attempts, 4);
        EXPECT_TRUE(mHandler.removeFolder(At("later")));
    }
}
