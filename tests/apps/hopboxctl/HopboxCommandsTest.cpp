#include "HopboxCommandsFixture.h"
#include "tests/support/PrinterProcessor.h"

#include <array>

// How names become names of folders is tested elsewhere.
static const QStringList cOddNames = {"../../a"_q,
                                      "a/b\\c:d*?\"<>|"_q,
                                      "nul"_q,
                                      "\u65E5\u672C \U0001F4E6 Gr\u00F6\u00DFe"_q,
                                      QString(300, QChar(0x65E5)),
                                      "a'b\tc"_q};

TEST_F(HopboxCommands, EveryCommandSaysWhatItDidByItsStatusAndMessage)
{
    // output: what is on standard output, or part of it; empty for nothing
    const std::tuple<const char*, int, const char*, const char*> cases[] = {
        {"list", 0, "You have no Hopbox yet. Make one with \"hopboxctl create\".\n", ""},
        {"list|--json", 0, "{\"errors\":[],\"ok\":true,\"result\":[],\"warnings\":[]}\n", ""},
        {"notify", 1, "", "No running Hopbox could be reached.\n"},
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
        {"show|pess", 1, "", "No Hopbox is registered as \"pess\". Did you mean \"Press\"?"},
        {"check|Press", 0,
         "Setting      MarkWeight=2\nSetting      UserSettings=true\nJob options  a.joboptions, 29 bytes\n",
         ""},
        {"set|Press|PDFSettings=x\x1b[1m|IsActive=false", 0, "", ""},
        {"list", 0, "  Press  x\\x1b[1m      true     false\n", ""},
        {"remove|Press", 0, "", ""},
        {"list", 0, "  false    false\n", ""},
        {"check|Press", 0, "Note         The export dialog does not list the Hopbox.", ""},
        {"restore|Press", 0, "", ""},
        {"list", 0, "  true     false\n", ""},
        {"rename|Press|Coated", 0, "", ""},
        {"create|Other|--job-options=a.joboptions", 0, "\n", ""},
        {"rename|Other|Coated", 1, "", "registered as \"Coated\" already"},
        {"list|--names", 0, "Coated\n", ""},
        {"delete|Other", 0, "", ""},
        {"show|Coated", 0, "HopboxName        Coated\n", ""},
        {"rename|Coated|Coated", 0, "", ""},
        {"rename|Coated|a\nb", 1, "", "may hold no line break"},
        {"rename|Coated|Press", 0, "", ""},
        {"submit|Press|file:///none", 1, "", "There is no file or folder \"file:///none\".\n"},
        {"submit|Press|none", 1, "", "There is no file or folder \"none\".\n"},
        {"submit|Press|a.joboptions", 1, "", "No running Hopbox took the job."},
        {"origins", 0, "", ""},
        {"origins|https://a.example|*", 0, "", ""},
        {"origins", 0, "https://a.example\n*\n", ""},
        {"origins|--none", 0, "", ""},
        {"origins|--json", 0, "\"result\":[]", ""},
        {"delete|Press", 0, "", ""},
        {"create|Own|--job-options|a.joboptions|--application|a.joboptions", 0, "\n", ""},
        {"show|Own", 0, "a.joboptions\nContextFilePath", ""},
        {"delete|Own", 0, "", ""},
        {"list", 0, "You have no Hopbox yet.", ""},
    };
    for (const auto& [arguments, status, output, error] : cases) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(Run(arguments), status);
        EXPECT_EQ(mOutput.isEmpty(), *output == '\0');
        EXPECT_TRUE(mOutput.contains(output));
        EXPECT_EQ(mError.isEmpty(), *error == '\0');
        EXPECT_TRUE(mError.contains(error));
    }
    for (const char* call :
         {"show|Press", "check|Press", "delete|Press", "remove|Press", "restore|Press", "rename|Press|New",
          "set|Press|IsPlugin=true", "set|Press|--setting|Trim=true", "submit|Press|a.joboptions"}) {
        EXPECT_EQ(Run(call), 1) << call;
        EXPECT_EQ(mOutput + mError, "hopboxctl: No Hopbox is registered as \"Press\".\n");
    }
    EXPECT_EQ(Run("show|Press|--json"), 1);
    EXPECT_EQ(GetAnswer().value("ok"_q), QJsonValue(false));
    EXPECT_EQ(GetAnswer().value("errors"_q), QJsonArray{"No Hopbox is registered as \"Press\"."_q});
    EXPECT_EQ(Run("show|--json"), 2);
    EXPECT_EQ(GetAnswer().value("errors"_q), QJsonArray{"NAME is missing."_q});
    const std::pair<const char*, const char*> wrong[] = {
        {"create", "NAME is missing."},
        {"create||--job-options|a.joboptions", "NAME is missing."},
        {"create|Press", "--job-options FILE is missing."},
        {"create|Press|--job-options", "\"--job-options\" needs a value: --job-options FILE."},
        {"create|Press|x|--job-options|a.joboptions", "Unexpected \"x\"."},
        {"create|Press|--joboptions=a",
         "There is no option \"--joboptions\". Did you mean \"--job-options\"?"},
        {"list|x", "Unexpected \"x\"."},
        {"list|--xml", "There is no option \"--xml\"."},
        {"list|--json=yes", "\"--json\" takes no value."},
        {"set|Press", "There is nothing to set"},
        {"set|Press|ActorName=x", "no field \"ActorName\" that can be set. The fields are ApplicationPath, "},
        {"set|Press|IsActiv=true", "Did you mean \"IsActive\"?"},
        {"set|Press|IsPlugin=True", "\"IsPlugin\" takes true or false, not \"True\"."},
        {"set|Press|--setting|Trim=on", "It takes true or false."},
        {"origins|x|--none", "\"--none\" takes no origins"},
        {"submit|Press", "PATH is missing."},
        {"crate|Press", "There is no command \"crate\". Did you mean \"create\"?"},
        {"zip|lst",
         "There is no command \"lst\" in \"zip\": it has list, extract, create, add, test. Did you mean "
         "\"list\"?"},
        {"--names|list", "There is no option \"--names\" before a command."},
    };
    for (const auto& [arguments, error] : wrong) {
        EXPECT_EQ(Run(arguments), 2) << arguments;
        EXPECT_TRUE(mOutput.isEmpty() && mError.startsWith("hopboxctl: ") && mError.contains(error) &&
                    mError.endsWith(" --help\" tells how to call it.\n"))
            << arguments;
    }
}

TEST_F(HopboxCommands, AHopboxThatCouldNotExportIsNotMade)
{
    const std::pair<const char*, const char*> files[] = {
        {"<< /CompatibilityLevel 1.4 >>", "can't be used: at the end: a value that nothing takes."},
        {"Dear printer,", "can't be used: line 1, column 1: \"Dear\" is nothing that job options hold."},
        {"<< /CompatibilityLevel (x) >> setdistillerparams",
         "can't be used: \"CompatibilityLevel\" takes a number from 1 to 2."},
        {"", "can't be used: at the end: no \"setdistillerparams\", so it names no settings."},
    };
    for (const auto& [jobOptions, error] : files) {
        WriteFile(GetPath("bad.joboptions"), jobOptions);
        EXPECT_EQ(Run("create|Press|--job-options|bad.joboptions"), 1) << jobOptions;
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(error));
    }
    const std::pair<const char*, const char*> settings[] = {
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
    for (const auto& [setting, error] : settings) {
        EXPECT_EQ(Run(QByteArray("create|Press|--job-options|a.joboptions|--setting|") + setting), 2);
        EXPECT_TRUE(mOutput.isEmpty() && mError.contains(error));
    }
    EXPECT_EQ(Run("list|--json"), 0);
    EXPECT_TRUE(GetArray().isEmpty());
}

TEST_F(HopboxCommands, AHopboxOfAnyNameIsMadeInAFolderOfItsOwnAndGoesWithIt)
{
    const QStringList before = ListFiles();
    const QString settings = GetAppData("Morvane/Hopbox/Cache/Settings");
    for (const QString& name : cOddNames) {
        SCOPED_TRACE(name.toStdString());
        ASSERT_EQ(Create(name), 0);
        const QString key = QString::fromLatin1(mOutput).trimmed();
        ASSERT_EQ(Run({"show"_q, name, "--json"_q}), 0);
        EXPECT_EQ(GetText("Key"), key);
        EXPECT_EQ(GetText("ActorName"), name);
        EXPECT_EQ(GetObject().value(QLatin1String("IsPlugin")), QJsonValue(true));
        const QFileInfo archive(GetText("ContextFilePath"));
        EXPECT_TRUE(archive.isFile());
        EXPECT_EQ(QFileInfo(archive.canonicalPath()).path(), QFileInfo(settings).canonicalFilePath());
        ASSERT_EQ(Run({"check"_q, key, "--json"_q}), 0);
        EXPECT_EQ(GetObject().value(QLatin1String("Build")).toInt(), 700000);
    }
    EXPECT_EQ(ListFolder(settings).size(), cOddNames.size());
    ASSERT_EQ(Run("list|--json"), 0);
    EXPECT_EQ(GetArray().size(), cOddNames.size());
    for (const QString& name : cOddNames)
        EXPECT_EQ(Run({"delete"_q, name}), 0);
    EXPECT_EQ(ListFolder(settings), QStringList());
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

TEST_F(HopboxCommands, AForeignArchiveStaysWhenItsHopboxIsDeleted)
{
    const QString settings = GetAppData("Morvane/Hopbox/Cache/Settings");
    for (const QString& archive : {GetPath("own.zip"), GetPath("Own/Project.hopbox"),
                                   settings + "/Own/Own.zip"_q, settings + "/Own/Deep/Project.hopbox"_q}) {
        ASSERT_TRUE(WriteFile(archive, "x"));
        ASSERT_EQ(Create("Press"_q), 0);
        ASSERT_EQ(Run({"set"_q, "Press"_q, "ContextFilePath="_q + archive}), 0);
        EXPECT_EQ(Run("delete|Press"), 0);
        EXPECT_TRUE(QFile::exists(archive)) << archive.toStdString();
    }
}

TEST_F(HopboxCommands, JobOptionsAndSettingsChangeInPlace)
{
    ASSERT_EQ(Run("create|Press|--job-options|a.joboptions|--setting|Trim=true|--setting|MarkOffset=6"), 0);
    WriteFile(GetPath("New.joboptions"), "<< /CompatibilityLevel 1.3 >> setdistillerparams");
    ASSERT_EQ(Run("set|Press|--job-options|New.joboptions|--setting|Trim=false|--without-setting|MarkOffset|"
                  "PDFSettings=Coated"),
              0);
    ASSERT_EQ(Run("check|Press|--json"), 0);
    EXPECT_EQ(GetObject().value("JobOptions"_q).toObject().value("Name"_q), QJsonValue("New.joboptions"_q));
    EXPECT_EQ(GetObject().value("Settings"_q), (QJsonObject{{"Trim"_q, "false"_q}}));
    ASSERT_EQ(Run("zip|list|--json|--|AppData/Morvane/Hopbox/Cache/Settings/Press/Project.hopbox"), 0);
    EXPECT_EQ(GetArray().size(), 2) << "the old job options are gone";

    ASSERT_EQ(Run("set|Press|--setting|Trim=true"), 0);
    ASSERT_EQ(Run("check|Press|--json"), 0);
    EXPECT_EQ(GetObject().value("JobOptions"_q).toObject().value("Name"_q), QJsonValue("New.joboptions"_q));

    // What fails changes neither the archive nor the entry.
    const QMap<QString, QByteArray> before = ReadTree(mSandbox.GetPath());
    WriteFile(GetPath("New.joboptions"), "no job options");
    EXPECT_EQ(Run("set|Press|--job-options|New.joboptions|IsActive=false"), 1);
    ASSERT_EQ(Run("set|Press|ContextFilePath=none|--setting|Trim=false"), 1);
    WriteFile(GetPath("New.joboptions"), "<< /CompatibilityLevel 1.3 >> setdistillerparams");
    EXPECT_EQ(ReadTree(mSandbox.GetPath()), before);
}

TEST_F(HopboxCommands, PathsAreKeptWhole)
{
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run("set|Press|ContextFilePath=x/../own.zip|HopboxIconPath="), 0);
    ASSERT_EQ(Run("show|Press|--json"), 0);
    EXPECT_EQ(QFileInfo(GetText("ContextFilePath")).fileName(), "own.zip"_q);
    EXPECT_TRUE(QFileInfo(GetText("ContextFilePath")).isAbsolute());
    EXPECT_FALSE(GetText("ContextFilePath").contains(".."_q));
    EXPECT_EQ(GetText("HopboxIconPath"), QString());
}

TEST_F(HopboxCommands, OfManyThatMakeOneNameOneDoes)
{
    constexpr int cCount = 8;
    std::array<QProcess, cCount> makers;
    for (QProcess& maker : makers) {
        maker.setWorkingDirectory(mSandbox.GetPath());
        maker.start(GetProgramPath("hopboxctl"), {"create"_q, "Same"_q, "--job-options"_q, "a.joboptions"_q});
    }
    int made = 0;
    for (QProcess& maker : makers) {
        EXPECT_TRUE(maker.waitForFinished());
        made += maker.exitCode() == 0 ? 1 : 0;
    }
    EXPECT_EQ(made, 1);
    ASSERT_EQ(Run("list|--json"), 0);
    EXPECT_EQ(GetArray().size(), 1);
    EXPECT_EQ(ListFolder(GetAppData("Morvane/Hopbox/Cache/Settings")).size(), 1)
        << "who came late leaves no folder behind";
}

TEST_F(HopboxCommands, SubmitTellsWhatBecameOfTheJobAtEachReceiver)
{
    ASSERT_EQ(Run("create|Press|--job-options|a.joboptions"), 0);
    // Others of the same image name may run on this machine, which belong to other roots.
    const auto submit = [this](PrinterProcessor& receiver, int status) {
        EXPECT_EQ(Run("submit|Press|a.joboptions|--json"), status);
        for (const QJsonValue& one : GetObject().value("receivers"_q).toArray()) {
            if (one.toObject().value("process"_q).toInt() == static_cast<int>(receiver.GetProcessID()))
                return one.toObject();
        }
        return QJsonObject();
    };
    PrinterProcessor taking(mSandbox, {});
    EXPECT_TRUE(submit(taking, 0).value("sent"_q).toBool());
    EXPECT_EQ(Run("notify"), 0);
    EXPECT_EQ(taking.ReadLine().value("kind"_q).toInt(), 145);
    EXPECT_EQ(taking.ReadLine().value("kind"_q).toInt(), 146);
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
