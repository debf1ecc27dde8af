#include "FileHandlerFixture.h"

class FileHandlerQueryTest : public FileHandlerTest
{
protected:
    FileHandlerQueryTest()
    {
        MakeAll("top/b.txt top/._b.txt top/a/target.pdf top/a/deep/only.PDF top/z/target.pdf top/target.pdf");
    }
};

TEST_F(FileHandlerQueryTest, CountsAndSizes)
{
    using Handler = Morvane::FileHandler;
    const struct
    {
        bool (Handler::*operation)(const QString&, qint64*);
        const char* path;
        qint64 expected;
    } cases[] = {{&Handler::countFolderItems, "top", 5},
                 {&Handler::getFileCount, "top", 6},
                 {&Handler::getTopLevelFileCount, "top", 3},
                 {&Handler::getByteCount, "top", 85},
                 {&Handler::getByteCount, "top/b.txt", 9},
                 {&Handler::getDotUnderscoreByteCount, "top", 11},
                 {&Handler::getDotUnderscoreByteCount, "top/a/target.pdf", 0}};
    for (const auto& entry : cases) {
        qint64 value = -1;
        EXPECT_TRUE((mHandler.*entry.operation)(At(entry.path), &value));
        EXPECT_EQ(value, entry.expected) << entry.path;
        EXPECT_FALSE((mHandler.*entry.operation)(At("missing"), &value));
        EXPECT_EQ(value, 0);
    }
}

TEST_F(FileHandlerQueryTest, FindsTheNearestOrTheDeepest)
{
    using Handler = Morvane::FileHandler;
    const struct
    {
        bool (Handler::*operation)(const QString&, const QString&, QString*);
        const char *name, *found;
    } cases[] = {{&Handler::findFile, "target.pdf", "top/target.pdf"},
                 {&Handler::findFileDepthFirst, "target.pdf", "top/a/target.pdf"},
                 {&Handler::findFileByWildcard, "on*.pdf", "top/a/deep/only.PDF"},
                 {&Handler::findFile, "deep", nullptr}};
    for (const auto& entry : cases) {
        QString found;
        const QString name = QString::fromLatin1(entry.name);
        EXPECT_EQ((mHandler.*entry.operation)(At("top"), name, &found), entry.found != nullptr);
        EXPECT_EQ(found, entry.found != nullptr ? At(entry.found) : QString());
    }
    for (const auto& [wildcard, expected] :
         {Texts{"*.?df", "a/deep/only.PDF|a/target.pdf|target.pdf|z/target.pdf"}, Texts{"*.txt", "b.txt"},
          Texts{"._*", "._b.txt"}}) {
        QStringList found;
        EXPECT_TRUE(mHandler.findFilesByWildcard(At("top"), QString::fromLatin1(wildcard), &found));
        EXPECT_EQ(found.join(QLatin1Char('|')).remove(At("top/")).toStdString(), expected);
    }
}

TEST_F(FileHandlerQueryTest, AccessIsTriedAndLeavesNoTrace)
{
    const std::string before = Tree();
    EXPECT_TRUE(mHandler.checkAccess(At("top")));
    EXPECT_TRUE(mHandler.checkAccess(At("top/b.txt")));
    EXPECT_FALSE(mHandler.checkAccess(At("top/missing")));
    EXPECT_FALSE(mHandler.checkAccess(At("top/missing"), QIODevice::WriteOnly));
    EXPECT_EQ(Tree(), before);
}

TEST_F(FileHandlerQueryTest, ReadsWholeFilesAndSaysWhatIsMissing)
{
    for (const auto& [path, expected] :
         {Texts{"top/b.txt", "top/b.txt"}, Texts{"top", ""}, Texts{"missing", ""}}) {
        QByteArray content = "before";
        EXPECT_EQ(mHandler.readFile(At(path), &content), *expected != '\0');
        EXPECT_EQ(content, expected);
    }
    EXPECT_EQ(Errors(), "readFile|Can't copy file: top\nreadFile|File does not exists: missing");
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
