#include "tests/support/Sandbox.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

#include <vector>

namespace
{
// Runs the real program in a sandbox that has job options to make Hopboxes with.
class HopboxCommands : public testing::Test
{
protected:
    HopboxCommands() { WriteFile(GetPath("a.joboptions"), "<< /A 1 >>"); }

    QString GetPath(const char* name) const { return mSandbox.GetPath(QString::fromUtf8(name)); }

    static void WriteFile(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    // Gives the exit status and keeps what the program says.
    int Run(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(mSandbox.GetPath());
        process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/hopboxctl"),
                      arguments);
        EXPECT_TRUE(process.waitForFinished());
        mOutput = process.readAllStandardOutput().replace("\r\n", "\n");
        mError = process.readAllStandardError().replace("\r\n", "\n");
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    // The arguments stand in a text with '|' between them.
    int Run(const char* arguments) { return Run(QString::fromUtf8(arguments).split(QLatin1Char('|'))); }

    int Create(const QString& name)
    {
        return Run({QStringLiteral("create"), name, QStringLiteral("--job-options"),
                    QStringLiteral("a.joboptions")});
    }

    // What the last command printed as JSON.
    QJsonObject GetObject() const { return QJsonDocument::fromJson(mOutput).object(); }
    QJsonArray GetArray() const { return QJsonDocument::fromJson(mOutput).array(); }
    QString GetText(const char* key) const { return GetObject().value(QLatin1String(key)).toString(); }

    QString GetAppData(const char* relative) const { return GetPath("AppData/") + QLatin1String(relative); }

    // Everything in the sandbox but the registry, which the first look at it makes.
    QStringList ListFiles() const
    {
        QStringList files;
        QDirIterator all(mSandbox.GetPath(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
        while (all.hasNext()) {
            if (!all.next().contains(QLatin1String("Morvane Prefs Folder")))
                files.append(all.filePath());
        }
        files.sort();
        return files;
    }

    Sandbox mSandbox;
    QByteArray mOutput;
    QByteArray mError;
};

const QStringList cOddNames = {QStringLiteral("../../a"),
                               QStringLiteral(".."),
                               QStringLiteral("a/b\\c:d*?\"<>|"),
                               QStringLiteral("nul"),
                               QStringLiteral("COM1.x"),
                               QStringLiteral("trailing. ."),
                               QStringLiteral("\u65E5\u672C \U0001F4E6 Gr\u00F6\u00DFe"),
                               QString(300, QChar(0x65E5)),
                               QStringLiteral("a'b\tc")};
}  // namespace

TEST_F(HopboxCommands, EveryCommandSaysWhatItDidByItsStatusAndMessage)
{
    const struct
    {
        const char* arguments;
        int status;
        const char* output;  // what is on standard output, or part of it; empty for nothing
        const char* error;
    } cases[] = {
        {"list", 0, "No Hopbox is registered.\n", ""},
        {"list|--json", 0, "[]\n", ""},
        {"show|Press", 1, "", "No Hopbox is registered as \"Press\".\n"},
        {"check|Press", 1, "", "No Hopbox is registered as \"Press\".\n"},
        {"remove|Press", 1, "", "No Hopbox is registered as \"Press\".\n"},
        {"set|Press|IsPlugin=true", 1, "", "No Hopbox is registered as \"Press\".\n"},
        {"submit|Press|a.joboptions", 1, "", "No Hopbox is registered as \"Press\".\n"},
        {"notify", 1, "", "No running Hopbox could be reached.\n"},
        {"notify|--own", 1, "", "No running Hopbox could be reached.\n"},
        {"create|Press|--job-options|none", 1, "", "there is no file \"none\""},
        {"create|Press|--job-options|.", 1, "", "there is no file \".\""},
        {"create|Press|--job-options|a.joboptions|--icon|none", 1, "", "--icon: there is no file"},
        {"create|Press|--job-options|a.joboptions|--application|none", 1, "",
         "--application: there is no file"},
        {"create|a\nb|--job-options|a.joboptions", 1, "", "may hold no line break: \"a\\x0ab\""},
        {"create|Press|--job-options|a.joboptions|--setting|UserSettings=true|--setting|A=b=c", 0, "\n", ""},
        {"create|Press|--job-options|a.joboptions", 1, "", "registered as \"Press\" already"},
        {"list", 0, "  Press  Press         true     true\n", ""},
        {"show|Press", 0, "PDFSettings       Press\n", ""},
        {"check|Press", 0,
         "Setting      A=b=c\nSetting      UserSettings=true\nJob options  a.joboptions, 10 bytes\n", ""},
        {"set|Press|PDFSettings=x\x1b[1m|IsActive=false", 0, "", ""},
        {"list", 0, "  Press  x\\x1b[1m      true     false\n", ""},
        {"submit|Press|none", 1, "", "There is no file or folder \"none\".\n"},
        {"submit|Press|a.joboptions", 1, "", "No running Hopbox took the job."},
        {"origins", 0, "", ""},
        {"origins|https://a.example|*", 0, "", ""},
        {"origins", 0, "https://a.example\n*\n", ""},
        {"origins|--none", 0, "", ""},
        {"origins|--json", 0, "[]\n", ""},
        {"remove|Press", 0, "", ""},
        {"list", 0, "No Hopbox is registered.\n", ""},
        {"create", 2, "", "usage:"},
        {"create|Press", 2, "", "usage:"},
        {"create|Press|--job-options", 2, "", "usage:"},
        {"create||--job-options|a.joboptions", 2, "", "usage:"},
        {"create|Press|--job-options|a.joboptions|--setting|=x", 2, "", "usage:"},
        {"create|Press|x|--job-options|a.joboptions", 2, "", "usage:"},
        {"list|x", 2, "", "usage:"},
        {"list|--xml", 2, "", "usage:"},
        {"show", 2, "", "usage:"},
        {"set|Press", 2, "", "usage:"},
        {"set|Press|ActorName=x", 2, "", "usage:"},
        {"set|Press|IsPlugin=True", 2, "", "usage:"},
        {"remove", 2, "", "usage:"},
        {"check", 2, "", "usage:"},
        {"origins|x|--none", 2, "", "usage:"},
        {"submit|Press", 2, "", "usage:"},
        {"notify|x", 2, "", "usage:"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.arguments);
        EXPECT_EQ(Run(test.arguments), test.status);
        EXPECT_EQ(mOutput.isEmpty(), *test.output == '\0') << mOutput.toStdString();
        EXPECT_TRUE(mOutput.contains(test.output)) << mOutput.toStdString();
        EXPECT_EQ(mError.isEmpty(), *test.error == '\0') << mError.toStdString();
        EXPECT_TRUE(mError.contains(test.error)) << mError.toStdString();
    }
}

TEST_F(HopboxCommands, AHopboxOfAnyNameIsMadeInAFolderOfItsOwnAndGoesWithIt)
{
    const QStringList before = ListFiles();
    const QString settings = GetAppData("Morvane/Hopbox/Cache/Settings");
    for (const QString& name : cOddNames) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_EQ(Create(name), 0) << mError.toStdString();
        const QString key = QString::fromLatin1(mOutput).trimmed();
        ASSERT_EQ(Run({QStringLiteral("show"), name, QStringLiteral("--json")}), 0);
        EXPECT_EQ(GetText("Key"), key);
        EXPECT_EQ(GetText("ActorName"), name);
        EXPECT_EQ(GetObject().value(QLatin1String("IsPlugin")), QJsonValue(true));
        const QFileInfo archive(GetText("ContextFilePath"));
        EXPECT_TRUE(archive.isFile());
        EXPECT_EQ(QFileInfo(archive.canonicalPath()).path(), QFileInfo(settings).canonicalFilePath());
        ASSERT_EQ(Run({QStringLiteral("check"), key, QStringLiteral("--json")}), 0) << mError.toStdString();
        EXPECT_EQ(GetObject().value(QLatin1String("Build")).toInt(), 700000);
    }
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
              cOddNames.size());
    ASSERT_EQ(Run("list|--json"), 0);
    EXPECT_EQ(GetArray().size(), cOddNames.size());
    for (const QString& name : cOddNames)
        EXPECT_EQ(Run({QStringLiteral("remove"), name}), 0);
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
    EXPECT_EQ(ListFiles().filter(GetPath("Temp/")), QStringList());
    EXPECT_TRUE(ListFiles().contains(before.first()));
}

TEST_F(HopboxCommands, ACreateThatFailsLeavesNothingBehind)
{
    // The registry can't be written: something else stands in its place.
    ASSERT_TRUE(
        QDir().mkpath(GetAppData("Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs/x")));
    ASSERT_TRUE(QDir().mkpath(GetPath("Temp")));
    const QStringList before = ListFiles();
    EXPECT_EQ(Create(QStringLiteral("Press")), 1);
    EXPECT_FALSE(mError.isEmpty());
    EXPECT_EQ(ListFiles(), before);
}

TEST_F(HopboxCommands, CheckTellsWhatIsWrong)
{
    ASSERT_EQ(Create(QStringLiteral("Press")), 0);
    ASSERT_EQ(Run("show|Press|--json"), 0);
    const QString archive = GetText("ContextFilePath");
    ASSERT_EQ(Run("set|Press|HopboxIconPath=/none.png"), 0);
    EXPECT_EQ(Run("check|Press"), 1);
    EXPECT_TRUE(mError.contains("There is no icon")) << mError.toStdString();

    WriteFile(archive, "no archive");
    EXPECT_EQ(Run("check|Press|--json"), 1);
    EXPECT_EQ(GetObject().value(QLatin1String("Problems")).toArray().size(), 2);
    EXPECT_TRUE(mError.contains("Can't open zip archive")) << mError.toStdString();

    ASSERT_TRUE(QFile::remove(archive));
    EXPECT_EQ(Run("check|Press"), 1);
    EXPECT_TRUE(mError.contains("There is no project archive")) << mError.toStdString();
    EXPECT_EQ(Run("remove|Press"), 0);
}

TEST_F(HopboxCommands, AForeignArchiveStaysWhenItsHopboxIsRemoved)
{
    const QString archive = GetPath("own.zip");
    WriteFile(archive, "x");
    ASSERT_EQ(Create(QStringLiteral("Press")), 0);
    ASSERT_EQ(
        Run({QStringLiteral("set"), QStringLiteral("Press"), QStringLiteral("ContextFilePath=") + archive}),
        0);
    EXPECT_EQ(Run("remove|Press"), 0);
    EXPECT_TRUE(QFile::exists(archive));
}
