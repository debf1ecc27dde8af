#include "CommandFixture.h"

#include <QRegularExpression>

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

TEST_F(ZipCommand, CreatesListsAndExtracts)
{
    for (const char* options :
         {"", " --name-field", " --password pw --level 0", " --password pw --name-field"}) {
        const QByteArray password = QByteArray(options).contains("pw") ? " --password pw" : "";
        EXPECT_EQ(0, Run("create made.zip a.txt folder" + QByteArray(options)));
        EXPECT_EQ(0, Run("list made.zip"));
        EXPECT_EQ(4, mOutput.count('\n'));
        EXPECT_TRUE(mOutput.contains(password.isEmpty() ? "  folder/\u65E5.txt\n" : " *folder/\u65E5.txt\n"));
        EXPECT_EQ(0, Run("extract made.zip out" + password));
        EXPECT_EQ("content of folder/\u65E5.txt", ReadFile(GetPath("out/folder/\u65E5.txt")));
        EXPECT_EQ(0, Run("extract made.zip flat --without-paths folder/b.txt" + password));
        EXPECT_EQ(QStringList("b.txt"_q), QDir(GetPath("flat")).entryList(QDir::Files));
        EXPECT_TRUE(mError.isEmpty()) << "no bar where nobody sees it";
    }
}

TEST_F(ZipCommand, AddsTestsAndExtractsFoldersAndPatterns)
{
    ASSERT_EQ(0, Run("create made.zip a.txt"));
    ASSERT_EQ(0, Run("add made.zip folder"));
    const QByteArray before = ReadFile(GetPath("made.zip"));
    EXPECT_EQ(1, Run("add made.zip a.txt"));
    EXPECT_EQ(before, ReadFile(GetPath("made.zip"))) << "a name that is there is refused";
    EXPECT_EQ(0, Run("test made.zip"));
    EXPECT_EQ("4 entries, all whole.\n", mOutput);
    // arguments, names: with ',' between
    const std::pair<const char*, const char*> cases[] = {
        {"folder", "folder/b.txt,folder/\u65E5.txt"},
        {"folder/", "folder/b.txt,folder/\u65E5.txt"},
        {"*.txt", "a.txt"},
        {"folder/?.txt", "folder/b.txt,folder/\u65E5.txt"},
        {"a.txt folder/b*", "a.txt,folder/b.txt"},
    };
    for (const auto& [arguments, names] : cases) {
        EXPECT_EQ(0, Run(QByteArray("extract made.zip out ") + arguments)) << arguments;
        const QStringList files =
            QStringList(ReadTree(GetPath("out")).keys()).filter(QRegularExpression("[^/]$"_q));
        EXPECT_EQ(QString::fromUtf8(names), files.join(QLatin1Char(',')));
        QDir(GetPath("out")).removeRecursively();
    }
    EXPECT_EQ(1, Run("extract made.zip out *.pdf"));
    EXPECT_TRUE(mError.contains("Can't find *.pdf in made.zip."));
}

TEST_F(ZipCommand, APasswordComesFromAFile)
{
    WriteFile(GetPath("secret"), "p\u00E4ss w\u00F6rd\r\nsecond line\n");
    ASSERT_EQ(0, Run("create made.zip a.txt --password-file secret"));
    EXPECT_EQ(1, Run("test made.zip"));
    EXPECT_EQ(1, Run("test made.zip --password-file a.txt"));
    EXPECT_EQ(0, Run("test made.zip --password-file=secret"));
    EXPECT_EQ(0, Run("extract made.zip out --password-file secret"));
    EXPECT_EQ("content of a.txt", ReadFile(GetPath("out/a.txt")));
    // As it is, not as UTF-8 would have it.
    WriteFile(GetPath("latin"), "p\xE4ss w\xF6rd\n");
    EXPECT_EQ(0, Run("test made.zip --password-file latin"));
    WriteFile(GetPath("empty"), "\nsecret\n");
    WriteFile(GetPath("utf16"), QByteArray("p\0w\0\n\0", 6));
    for (const char* file : {"none", "empty", "utf16"}) {
        EXPECT_EQ(1, Run(QByteArray("test made.zip --password-file ") + file));
        EXPECT_TRUE(mError.startsWith("hopboxctl: --password-file: "));
    }
}

TEST_F(ZipCommand, WhatLooksLikeAnAttackIsExtractedWhenToldSo)
{
    WriteFile(GetPath("1"), "same");
    WriteFile(GetPath("2"), "same");
    ASSERT_EQ(0, Run("create made.zip 1 2"));
    QByteArray bytes = ReadFile(GetPath("made.zip"));
    for (int index = 42; index < 46; ++index)
        bytes[bytes.lastIndexOf("PK\1\2") + index] = 0;  // both entries have the data of the first
    WriteFile(GetPath("made.zip"), bytes);
    for (const char* onError : {"", " --on-error skip"}) {
        EXPECT_EQ(1, Run(QByteArray("extract made.zip out") + onError));
        EXPECT_TRUE(mError.contains("entries overlap"));
        EXPECT_EQ(0, Run(QByteArray("extract made.zip out --no-limits") + onError));
    }
}

TEST_F(ZipCommand, ADamagedEntryIsFoundAndDealtWithAsTold)
{
    ASSERT_EQ(0, Run("create made.zip a.txt folder/b.txt folder/\u65E5.txt --level 0"));
    QByteArray bytes = ReadFile(GetPath("made.zip"));
    WriteFile(GetPath("made.zip"), bytes.replace("content of folder/b", "CONTENT of folder/b"));
    EXPECT_EQ(1, Run("test made.zip --json"));
    EXPECT_EQ(GetResult().toObject().value("damaged"_q).toArray().size(), 1);
    EXPECT_TRUE(mError.contains("b.txt"));
    const std::pair<const char*, int> cases[] = {{"skip", 2}, {"stop", 1}, {"remove", 0}, {"ask", 2}};
    for (const auto& [option, files] : cases) {
        EXPECT_EQ(1, Run(QByteArray("extract made.zip out --on-error ") + option));
        EXPECT_TRUE(mError.contains("b.txt"));
        EXPECT_EQ(files, ReadTree(GetPath("out")).size()) << option;
        EXPECT_EQ(mError.contains("Nobody is there to be asked; entries that fail are skipped."),
                  QByteArray(option) == "ask");
        QDir(GetPath("out")).removeRecursively();
    }
}

TEST_F(ZipCommand, FailuresAreToldAndLeaveNothing)
{
    ASSERT_EQ(0, Run("create good.zip a.txt --password pw"));
    const QStringList before = QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden);
    const std::pair<const char*, const char*> cases[] = {
        {"create bad.zip a.txt missing", "Item doesn't exist: missing"},
        {"create none/bad.zip a.txt", "Error opening file: "},
        {"list missing.zip", "Can't open zip archive: missing.zip"},
        {"extract a.txt out", "Can't open zip archive: a.txt"},
        {"extract good.zip out missing", "Can't find missing in good.zip."},
        {"extract good.zip out --password other", " from good.zip"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(1, Run(line)) << line;
        EXPECT_TRUE(mError.startsWith("hopboxctl: ") && mError.contains(error)) << line;
        EXPECT_TRUE(mOutput.isEmpty());
    }
    for (const char* call :
         {"", "list", "list good.zip a.txt", "extract good.zip", "create bad.zip", "test",
          "test good.zip a.txt", "add good.zip", "add good.zip a.txt --password x --ask-password",
          "extract good.zip out --on-error ask --without-paths", "extract good.zip out --on-error jump",
          "extract good.zip out --on-error skip --password pw", "create bad.zip a.txt --level 10",
          "create bad.zip a.txt --level x", "list good.zip --password pw"}) {
        EXPECT_EQ(2, Run(call)) << call;
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(" --help\" tells")) << call;
    }
    QDir(GetPath("out")).removeRecursively();
    EXPECT_EQ(before, QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden));
}
