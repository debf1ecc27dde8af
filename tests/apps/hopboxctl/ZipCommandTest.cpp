#include "tests/support/Sandbox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace
{
class ZipCommand : public testing::Test
{
protected:
    ZipCommand()
    {
        for (const char* name : {"a.txt", "folder/b.txt", "folder/\u65E5.txt"}) {
            const QString path = GetPath(name);
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(QByteArray("content of ") + name);
        }
    }

    QString GetPath(const char* name) const { return mSandbox.GetPath(QString::fromUtf8(name)); }

    // Runs "zip" with the arguments; keeps what it says.
    int Run(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(mSandbox.GetPath());
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/hopboxctl"),
                      QStringList(QStringLiteral("zip")) + arguments);
        EXPECT_TRUE(process.waitForFinished());
        mOutput = process.readAllStandardOutput().replace("\r\n", "\n");
        mError = process.readAllStandardError().replace("\r\n", "\n");
        return process.exitCode();
    }

    int Run(const QByteArray& arguments) { return Run(QString::fromUtf8(arguments).split(QLatin1Char(' '))); }

    QByteArray Read(const char* name) const
    {
        QFile file(GetPath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Sandbox mSandbox;
    QByteArray mOutput;
    QByteArray mError;
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
        EXPECT_EQ("content of folder/\u65E5.txt", Read("out/folder/\u65E5.txt"));
        EXPECT_EQ(0, Run("extract made.zip flat --without-paths folder/b.txt" + password));
        EXPECT_EQ(QStringList(QStringLiteral("b.txt")), QDir(GetPath("flat")).entryList(QDir::Files));
        EXPECT_TRUE(mError.isEmpty()) << "no bar where nobody sees it: " << mError.constData();
    }
}

TEST_F(ZipCommand, FailuresAreToldAndLeaveNothing)
{
    ASSERT_EQ(0, Run("create good.zip a.txt --password pw"));
    const QStringList before = QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden);
    const struct
    {
        const char* call;
        int status;
        const char* error;
    } cases[] = {
        {"create bad.zip a.txt missing", 1, "Error in opening file for reading: "},
        {"create none/bad.zip a.txt", 1, "Error opening file: "},
        {"list missing.zip", 1, "Can't open zip archive: missing.zip"},
        {"extract a.txt out", 1, "Can't open zip archive: a.txt"},
        {"extract good.zip out missing", 1, "Can't find missing in good.zip."},
        {"extract good.zip out --password other", 1, "the password is wrong"},
        {"", 2, "usage"},
        {"list", 2, "usage"},
        {"list good.zip a.txt", 2, "usage"},
        {"extract good.zip", 2, "usage"},
        {"create bad.zip", 2, "usage"},
        {"create bad.zip a.txt --level 10", 2, "usage"},
        {"create bad.zip a.txt --level x", 2, "usage"},
        {"list good.zip --password pw", 2, "usage"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(test.status, Run(test.call)) << test.call;
        EXPECT_TRUE(mError.startsWith("hopboxctl: ") && mError.contains(test.error))
            << test.call << mError.constData();
        EXPECT_TRUE(mOutput.isEmpty());
    }
    QDir(GetPath("out")).removeRecursively();
    EXPECT_EQ(before, QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden));
}
