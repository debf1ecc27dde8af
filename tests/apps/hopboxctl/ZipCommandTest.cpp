#include "CommandFixture.h"

namespace
{
class ZipCommand : public CommandTest
{
protected:
    ZipCommand()
    {
        for (const char* name : {"a.txt", "folder/b.txt", "folder/\u65E5.txt"})
            EXPECT_TRUE(WriteFile(GetPath(name), QByteArray("content of ") + name));
    }

    // Runs "zip" with the arguments.
    int Run(const QByteArray& arguments)
    {
        return CommandTest::Run(QString::fromUtf8("zip " + arguments).split(QLatin1Char(' ')));
    }
};
}  // namespace

TEST_F(ZipCommand, CreatesListsAndExtracts)
{
    for (const char* options :
         {"", " --name-field", " --password pw --level 0", " --password pw --name-field"}) {
        const QByteArray password = QByteArray(options).contains("pw") ? " --password pw" : "";
        EXPECT_EQ(0, Run("create made.zip a.txt folder" + QByteArray(options))) << mError.constData();
        EXPECT_EQ(0, Run("list made.zip"));
        EXPECT_EQ(4, mOutput.count('\n'));
        EXPECT_TRUE(mOutput.contains(password.isEmpty() ? "  folder/\u65E5.txt\n" : " *folder/\u65E5.txt\n"))
            << mOutput.constData();
        EXPECT_EQ(0, Run("extract made.zip out" + password)) << mError.constData();
        EXPECT_EQ("content of folder/\u65E5.txt", ReadFile(GetPath("out/folder/\u65E5.txt")));
        EXPECT_EQ(0, Run("extract made.zip flat --without-paths folder/b.txt" + password));
        EXPECT_EQ(QStringList("b.txt"_q), QDir(GetPath("flat")).entryList(QDir::Files));
        EXPECT_TRUE(mError.isEmpty()) << "no bar where nobody sees it: " << mError.constData();
    }
}

TEST_F(ZipCommand, FailuresAreToldAndLeaveNothing)
{
    ASSERT_EQ(0, Run("create good.zip a.txt --password pw"));
    const QStringList before = QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden);
    const struct
    {
        const char *call, *error;
    } cases[] = {
        {"create bad.zip a.txt missing", "Item doesn't exist: missing"},
        {"create none/bad.zip a.txt", "Error opening file: "},
        {"list missing.zip", "Can't open zip archive: missing.zip"},
        {"extract a.txt out", "Can't open zip archive: a.txt"},
        {"extract good.zip out missing", "Can't find missing in good.zip."},
        {"extract good.zip out --password other", " from good.zip"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(1, Run(test.call)) << test.call;
        EXPECT_TRUE(mError.startsWith("hopboxctl: ") && mError.contains(test.error))
            << test.call << mError.constData();
        EXPECT_TRUE(mOutput.isEmpty());
    }
    for (const char* call : {"", "list", "list good.zip a.txt", "extract good.zip", "create bad.zip",
                             "create bad.zip a.txt --level 10", "create bad.zip a.txt --level x",
                             "list good.zip --password pw"}) {
        EXPECT_EQ(2, Run(call)) << call;
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(" --help\" tells")) << call;
    }
    QDir(GetPath("out")).removeRecursively();
    EXPECT_EQ(before, QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden));
}
