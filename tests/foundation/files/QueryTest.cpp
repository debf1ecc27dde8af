#include "FileHandlerFixture.h"

namespace
{
class FileHandlerQueryTest : public FileHandlerTest
{
protected:
    FileHandlerQueryTest()
    {
        Make("top/b.txt", "12345");
        Make("top/._b.txt", "123");
        Make("top/a/target.pdf", "1");
        Make("top/a/deep/only.PDF", "12");
        Make("top/z/target.pdf", "");
        Make("top/target.pdf", "");
    }
};
}  // namespace

TEST_F(FileHandlerQueryTest, CountsAndSizes)
{
    using Count = bool (Morvane::FileHandler::*)(const QString&, qint64*);
    struct Case
    {
        Count operation;
        const char* path;
        qint64 expected;
    };
    using Handler = Morvane::FileHandler;
    for (const Case& entry :
         {Case{&Handler::countFolderItems, "top", 5}, Case{&Handler::getFileCount, "top", 6},
          Case{&Handler::getTopLevelFileCount, "top", 3}, Case{&Handler::getByteCount, "top", 11},
          Case{&Handler::getByteCount, "top/b.txt", 5}, Case{&Handler::getDotUnderscoreByteCount, "top", 3},
          Case{&Handler::getDotUnderscoreByteCount, "top/b.txt", 3},
          Case{&Handler::getDotUnderscoreByteCount, "top/a/target.pdf", 0}}) {
        qint64 value = -1;
        EXPECT_TRUE((mHandler.*entry.operation)(At(entry.path), &value));
        EXPECT_EQ(value, entry.expected) << entry.path;
        EXPECT_FALSE((mHandler.*entry.operation)(At("missing"), &value));
        EXPECT_EQ(value, 0);
    }
}

TEST_F(FileHandlerQueryTest, FindsTheNearestOrTheDeepest)
{
    QString found;
    EXPECT_TRUE(mHandler.findFile(At("top"), "target.pdf"_q, &found));
    EXPECT_EQ(found, At("top/target.pdf"));
    EXPECT_TRUE(mHandler.findFileDepthFirst(At("top"), "target.pdf"_q, &found));
    EXPECT_EQ(found, At("top/a/target.pdf"));
    EXPECT_TRUE(mHandler.findFileByWildcard(At("top"), "on*.pdf"_q, &found));
    EXPECT_EQ(found, At("top/a/deep/only.PDF"));
    EXPECT_FALSE(mHandler.findFile(At("top"), "deep"_q, &found));
    EXPECT_TRUE(found.isEmpty());

    QStringList all;
    EXPECT_TRUE(mHandler.findFilesByWildcard(At("top"), "*.?df"_q, &all));
    EXPECT_EQ(all, QStringList({At("top/a/deep/only.PDF"), At("top/a/target.pdf"), At("top/target.pdf"),
                                At("top/z/target.pdf")}));
    EXPECT_TRUE(mHandler.findFilesByWildcard(At("top"), "*.txt"_q, &all));
    EXPECT_EQ(all, QStringList(At("top/b.txt")));
    EXPECT_TRUE(mHandler.findFilesByWildcard(At("top"), "._*"_q, &all));
    EXPECT_EQ(all, QStringList(At("top/._b.txt")));
}

TEST_F(FileHandlerQueryTest, AccessIsTriedAndLeavesNoTrace)
{
    const std::string before = Tree();
    EXPECT_TRUE(mHandler.checkAccess(At("top")));
    EXPECT_TRUE(mHandler.checkAccess(At("top/b.txt")));
    EXPECT_FALSE(mHandler.checkAccess(At("top/missing")));
    EXPECT_FALSE(mHandler.checkAccess(At("top/missing"), QIODevice::WriteOnly));
    EXPECT_EQ(Tree(), before);
    EXPECT_EQ(ReadFile(At("top/b.txt")), "12345");
}

TEST_F(FileHandlerQueryTest, ReadsWholeFilesAndSaysWhatIsMissing)
{
    QByteArray content = "before";
    EXPECT_TRUE(mHandler.readFile(At("top/b.txt"), &content));
    EXPECT_EQ(content, "12345");
    EXPECT_FALSE(mHandler.readFile(At("top/missing"), &content));
    EXPECT_TRUE(content.isEmpty());
    EXPECT_FALSE(mHandler.readFile(At("top"), &content));
    EXPECT_EQ(Errors().find("FileHandler::readFile|File does not exists: top/missing\n"), 0U);
}

TEST_F(FileHandlerQueryTest, VolumesAreAskedForWhatIsNotThereYet)
{
    qint64 bytes = 0;
    EXPECT_TRUE(mHandler.getFreeSpace(At("not/yet/there"), &bytes));
    EXPECT_GT(bytes, 0);
    EXPECT_TRUE(mHandler.checkSameVolume(At("top"), At("not/yet/there")));
    EXPECT_TRUE(mHandler.hasDiskInDrive(At("top")));
}

TEST_F(FileHandlerQueryTest, ExtensionOfALinksTarget)
{
    const QString link = At("link.lnk");
    ASSERT_TRUE(QFile::link(At("top/a/target.pdf"), link));
    QString extension;
    EXPECT_TRUE(mHandler.getExtensionFromLink(link, &extension));
    EXPECT_EQ(extension, "pdf"_q);
    EXPECT_FALSE(mHandler.getExtensionFromLink(At("top/b.txt"), &extension));
    EXPECT_TRUE(extension.isEmpty());
}
