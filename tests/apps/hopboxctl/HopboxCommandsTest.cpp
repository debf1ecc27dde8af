#include "foundation/core/GEncoding.h"

#include "CommandFixture.h"
#include "tests/support/PrinterProcessor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{
// The sandbox has job options to make Hopboxes with.
class HopboxCommands : public CommandTest
{
protected:
    HopboxCommands() { WriteFile(GetPath("a.joboptions"), "<< /A 1 >> setdistillerparams"); }

    using CommandTest::Run;
    int Run(const QByteArray& arguments) { return Run(arguments.constData()); }

    // The arguments stand in a text with '|' between them.
    int Run(const char* arguments) { return Run(QString::fromUtf8(arguments).split(QLatin1Char('|'))); }

    int Create(const QString& name) { return Run({"create"_q, name, "--job-options"_q, "a.joboptions"_q}); }

    // What the last command printed as JSON.
    QJsonObject GetObject() const { return QJsonDocument::fromJson(mOutput).object(); }
    QJsonArray GetArray() const { return QJsonDocument::fromJson(mOutput).array(); }
    QString GetText(const char* key) const { return GetObject().value(QLatin1String(key)).toString(); }

    QString GetAppData(const char* relative) const { return GetPath("AppData/") + QLatin1String(relative); }

    // Everything in the sandbox but the registry, which the first look at it makes.
    QStringList ListFiles() const
    {
        QStringList files;
        for (const QString& name : ReadTree(mSandbox.GetPath()).keys()) {
            if (!name.contains("Morvane Prefs Folder"_q))
                files.append(name);
        }
        return files;
    }
};

// How names become names of folders is tested elsewhere.
const QStringList cOddNames = {"../../a"_q,
                               "a/b\\c:d*?\"<>|"_q,
                               "nul"_q,
                               "\u65E5\u672C \U0001F4E6 Gr\u00F6\u00DFe"_q,
                               QString(300, QChar(0x65E5)),
                               "a'b\tc"_q};
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
        {"notify", 1, "", "No running Hopbox could be reached.\n"},
        {"notify|--own", 1, "", "No running Hopbox could be reached.\n"},
        {"create|Press|--job-options|none", 1, "", "there is no file \"none\""},
        {"create|Press|--job-options|.", 1, "", "there is no file \".\""},
        {"create|Press|--job-options|a.joboptions|--icon|none", 1, "", "--icon: there is no file"},
        {"create|Press|--job-options|a.joboptions|--application|none", 1, "",
         "--application: there is no file"},
        {"create|a\nb|--job-options|a.joboptions", 1, "", "may hold no line break: \"a\\x0ab\""},
        {"create|Press|--job-options|a.joboptions|--setting|UserSettings=true|--setting|MarkWeight=2", 0,
         "\n", ""},
        {"create|Press|--job-options|a.joboptions", 1, "", "registered as \"Press\" already"},
        {"list", 0, "  Press  Press         true     true\n", ""},
        {"show|Press", 0, "PDFSettings       Press\n", ""},
        {"check|Press", 0,
         "Setting      MarkWeight=2\nSetting      UserSettings=true\nJob options  a.joboptions, 29 bytes\n",
         ""},
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
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.arguments);
        EXPECT_EQ(Run(test.arguments), test.status);
        EXPECT_EQ(mOutput.isEmpty(), *test.output == '\0') << mOutput.toStdString();
        EXPECT_TRUE(mOutput.contains(test.output)) << mOutput.toStdString();
        EXPECT_EQ(mError.isEmpty(), *test.error == '\0') << mError.toStdString();
        EXPECT_TRUE(mError.contains(test.error)) << mError.toStdString();
    }
    for (const char* call : {"show|Press", "check|Press", "remove|Press", "set|Press|IsPlugin=true",
                             "submit|Press|a.joboptions"}) {
        EXPECT_EQ(Run(call), 1) << call;
        EXPECT_EQ(mOutput + mError, "hopboxctl: No Hopbox is registered as \"Press\".\n");
    }
    for (const char* call :
         {"create", "create|Press", "create|Press|--job-options", "create||--job-options|a.joboptions",
          "create|Press|--job-options|a.joboptions|--setting|=x", "create|Press|x|--job-options|a.joboptions",
          "list|x", "list|--xml", "show", "set|Press", "set|Press|ActorName=x", "set|Press|IsPlugin=True",
          "remove", "check", "origins|x|--none", "submit|Press", "notify|x"}) {
        EXPECT_EQ(Run(call), 2) << call;
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains("usage:")) << call;
    }
}

TEST_F(HopboxCommands, AHopboxThatCouldNotExportIsNotMade)
{
    const struct
    {
        const char *jobOptions, *error;
    } files[] = {
        {"<< /CompatibilityLevel 1.4 >>", "can't be used: at the end: a value that nothing takes."},
        {"Dear printer,", "can't be used: line 1, column 1: \"Dear\" is nothing that job options hold."},
        {"<< /CompatibilityLevel (x) >> setdistillerparams",
         "can't be used: \"CompatibilityLevel\" takes a number from 1 to 2."},
        {"", "can't be used: at the end: no \"setdistillerparams\", so it names no settings."},
    };
    for (const auto& test : files) {
        WriteFile(GetPath("bad.joboptions"), test.jobOptions);
        EXPECT_EQ(Run("create|Press|--job-options|bad.joboptions"), 1) << test.jobOptions;
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(test.error)) << mError.toStdString();
    }
    const struct
    {
        const char *setting, *error;
    } settings[] = {
        {"UserSetings=true",
         "A Hopbox has no setting \"UserSetings\". Did you mean \"UserSettings\"? The settings are "},
        {"UserSettings=True", "It takes true or false."},
        {"BleedChoice=banana", "\"BleedChoice\" can't be \"banana\". It takes 1 for"},
        {"BleedChoice=0", "It takes 1 for"},
        {"MarkWeight=3", "It takes 0, 1 or 2,"},
        {"BleedTopValue=-1", "It takes points, from 0 to 14400."},
        {"BleedTopValue=14401", "It takes points"},
        {"BleedTopValue=nan", "It takes points"},
        {"BleedTopValue=", "It takes points"},
        {"MarkOffset=0", "It takes points, above 0"},
        {"PrintSpreads", "\"PrintSpreads\" is no KEY=VALUE."},
    };
    for (const auto& test : settings) {
        EXPECT_EQ(Run(QByteArray("create|Press|--job-options|a.joboptions|--setting|") + test.setting), 2);
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(test.error)) << mError.toStdString();
    }
    EXPECT_EQ(Run("list"), 0);
    EXPECT_EQ(mOutput, "No Hopbox is registered.\n");
}

TEST_F(HopboxCommands, AHopboxOfAnyNameIsMadeInAFolderOfItsOwnAndGoesWithIt)
{
    const QStringList before = ListFiles();
    const QString settings = GetAppData("Morvane/Hopbox/Cache/Settings");
    for (const QString& name : cOddNames) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_EQ(Create(name), 0) << mError.toStdString();
        const QString key = QString::fromLatin1(mOutput).trimmed();
        ASSERT_EQ(Run({"show"_q, name, "--json"_q}), 0);
        EXPECT_EQ(GetText("Key"), key);
        EXPECT_EQ(GetText("ActorName"), name);
        EXPECT_EQ(GetObject().value(QLatin1String("IsPlugin")), QJsonValue(true));
        const QFileInfo archive(GetText("ContextFilePath"));
        EXPECT_TRUE(archive.isFile());
        EXPECT_EQ(QFileInfo(archive.canonicalPath()).path(), QFileInfo(settings).canonicalFilePath());
        ASSERT_EQ(Run({"check"_q, key, "--json"_q}), 0) << mError.toStdString();
        EXPECT_EQ(GetObject().value(QLatin1String("Build")).toInt(), 700000);
    }
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
              cOddNames.size());
    ASSERT_EQ(Run("list|--json"), 0);
    EXPECT_EQ(GetArray().size(), cOddNames.size());
    for (const QString& name : cOddNames)
        EXPECT_EQ(Run({"remove"_q, name}), 0);
    EXPECT_EQ(QDir(settings).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
    EXPECT_TRUE(ReadTree(GetPath("Temp")).isEmpty());
    EXPECT_TRUE(ListFiles().contains(before.first()));
}

TEST_F(HopboxCommands, ACreateThatFailsLeavesNothingBehind)
{
    // The registry can't be written: something else stands in its place.
    ASSERT_TRUE(
        QDir().mkpath(GetAppData("Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs/x")));
    ASSERT_TRUE(QDir().mkpath(GetPath("Temp")));
    const QStringList before = ListFiles();
    EXPECT_EQ(Create("Press"_q), 1);
    EXPECT_FALSE(mError.isEmpty());
    EXPECT_EQ(ListFiles(), before);
}

TEST_F(HopboxCommands, CheckTellsWhatIsWrong)
{
    ASSERT_EQ(Create("Press"_q), 0);
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

TEST_F(HopboxCommands, CheckTellsOfAHopboxThatCannotExport)
{
    // An archive that another program has made: only its job options and settings are odd.
    ASSERT_TRUE(WriteFile(GetPath("PrinterFiles/Old.joboptions"), "<< /CompatibilityLevel 1.4 >>"));
    ASSERT_TRUE(
        WriteFile(GetPath("Project/Project.prefs"),
                  "#BEGINPREFS\r\n\"PluginSettings\" #BEGINDICT\r\n\"Bleed\" \"on\"\r\n\"Paper\" \"A4\"\r\n"
                  "#ENDDICT\r\n#ENDPREFS\r\n"));
    ASSERT_EQ(Create("Press"_q), 0);
    EXPECT_EQ(Run("check|Press"), 0);
    EXPECT_FALSE(mOutput.contains("Note"))
        << "nothing is odd about a Hopbox of ours: " << mOutput.toStdString();

    const QString utf16 = GetPath("Project/Project.prefs");
    WriteFile(utf16, GEncoding::GetUTF16LittleEndian()->Encode(QString::fromLatin1(ReadFile(utf16))));
    ASSERT_EQ(Run("zip|create|odd.zip|Project|PrinterFiles"), 0) << mError.toStdString();
    ASSERT_EQ(Run({"set"_q, "Press"_q, "ContextFilePath="_q + GetPath("odd.zip")}), 0);
    EXPECT_EQ(Run("check|Press|--json"), 1);
    const QJsonArray problems = GetObject().value(QLatin1String("Problems")).toArray();
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(
        problems.at(0).toString().startsWith("The job options \"Old.joboptions\" can't be used: at"_q));
    EXPECT_EQ(
        GetObject().value(QLatin1String("Notes")).toArray(),
        (QJsonArray{
            "The plug-in passes over a setting. A Hopbox has no setting \"Paper\"."_q,
            "The plug-in passes over a setting. The setting \"Bleed\" can't be \"on\". It takes true or false."_q}));
}

TEST_F(HopboxCommands, AForeignArchiveStaysWhenItsHopboxIsRemoved)
{
    const QString archive = GetPath("own.zip");
    WriteFile(archive, "x");
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run({"set"_q, "Press"_q, "ContextFilePath="_q + archive}), 0);
    EXPECT_EQ(Run("remove|Press"), 0);
    EXPECT_TRUE(QFile::exists(archive));
}

TEST_F(HopboxCommands, SubmitTellsWhatBecameOfTheJobAtEachReceiver)
{
    ASSERT_EQ(Run("create|Press|--job-options|a.joboptions"), 0);
    // Others of the same image name may run on this machine, which belong to other roots.
    const auto submit = [this](PrinterProcessor& receiver, int status) {
        EXPECT_EQ(Run("submit|Press|a.joboptions|--json"), status);
        const QJsonObject answer = QJsonDocument::fromJson(mOutput).object();
        EXPECT_EQ(answer.value("sent"_q).toBool(), status == 0);
        for (const QJsonValue& one : answer.value("receivers"_q).toArray()) {
            if (one.toObject().value("process"_q).toInt() == static_cast<int>(receiver.GetProcessID()))
                return one.toObject();
        }
        return QJsonObject();
    };
    PrinterProcessor taking(mSandbox, {});
    EXPECT_TRUE(submit(taking, 0).value("sent"_q).toBool());
    taking.Kill();
    const Sandbox other;
    PrinterProcessor stranger(other, {});
    qputenv("MORVANE_ROOT", mSandbox.GetPath().toLocal8Bit());
    const QJsonObject refusal = submit(stranger, 1);
    EXPECT_EQ(refusal.value("code"_q).toInt(), 40153);
    EXPECT_EQ(refusal.value("reason"_q).toString(), "The process has no message receiver."_q);
    EXPECT_EQ(Run("submit|Press|a.joboptions"), 1);
    EXPECT_TRUE(mError.contains(
        "Process %1 (error 40153): The process has no message receiver.\n"_q.arg(stranger.GetProcessID())
            .toUtf8()));
}
