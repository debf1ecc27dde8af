#include "foundation/system/PSystem.h"
#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

// A Hopbox "Press" with a setting, and a receiver: all is well.
class DoctorTest : public CommandTest
{
protected:
    DoctorTest() { EXPECT_EQ(Create("Press"), 0); }

    int Create(const char* name)
    {
        return CommandTest::Create(QLatin1String(name), "--setting|Trim=true"_list);
    }

    int Set(const QString& assignment) { return Run({"set"_q, "Press"_q, assignment}); }

    // The kinds of what the doctor finds, with "!" before a problem and "+" behind one that is mended.
    QStringList Look(const QStringList& more = {})
    {
        mStatus = Run(QStringList{"doctor"_q, "--json"_q} + more);
        QStringList kinds;
        for (const QJsonValue& finding : GetResult().toArray())
            kinds.append((finding["isProblem"_q].toBool() ? "!"_q : QString()) +
                         finding["kind"_q].toString() + (finding["isMended"_q].toBool() ? "+"_q : QString()));
        return kinds;
    }

    // Puts another archive in the place of the Hopbox's, with these job options and settings.
    void ReplaceArchive(const QByteArray& jobOptions, const QString& setting)
    {
        WriteFile(GetPath("PrinterFiles/a.joboptions"), jobOptions);
        const QString settings =
            "#BEGINPREFS\r\n\"PluginSettings\" #BEGINDICT\r\n\"%1\" \"on\"\r\n#ENDDICT\r\n#ENDPREFS\r\n"_q
                .arg(setting);
        WriteFile(GetPath("Project/Project.prefs"),
                  QByteArray(reinterpret_cast<const char*>(settings.utf16()), settings.size() * 2));
        QFile::remove(mArchive);
        EXPECT_EQ(Run({"zip"_q, "create"_q, mArchive, "Project"_q, "PrinterFiles"_q, "--name-field"_q,
                       "--level"_q, "0"_q}),
                  0);
    }

    const QString mAppData = GetPath("AppData/");
    const QString mSettings = mAppData + "Morvane/Hopbox/Cache/Settings"_q;
    const QString mArchive = mSettings + "/Press/Project.hopbox"_q;
    const QString mPreferences = mAppData + "Morvane Prefs Folder/"_q;
    const QString mRegistry = mPreferences + "Printer Processor/MorvanePrinterProcessor.prefs"_q;
    int mStatus = -1;
};

TEST_F(DoctorTest, EachDamageIsFoundNamedAndMendedWhereThatIsSafe)
{
    PrinterProcessor receiver(mSandbox, {});
    ASSERT_EQ(Look(), QStringList());
    EXPECT_EQ(mStatus, 0);
    const QByteArray wholeRegistry = ReadFile(mRegistry);
    const QByteArray wholeArchive = ReadFile(mArchive);
    const std::tuple<const char*, std::function<void()>, bool> cases[] = {
        {"!registry-damaged", [&] { WriteFile(mRegistry, wholeRegistry + 'x'); }, false},
        {"damaged-copy", [&] { WriteFile(mRegistry + ".damaged"_q, "x"); }, false},
        {"damaged-copy", [&] { WriteFile(mArchive + ".damaged.1"_q, "x"); }, false},
        {"damaged-copy",
         [&] { WriteFile(mPreferences + "Junctra_CC2019_64_InDesign/JunctraPlugins.pref.damaged.2"_q, "x"); },
         false},
        {"!record-unreadable",
         [&] {
             Run({"prefs"_q, mRegistry, "--set"_q, "PrinterProcessorRegistry"_q, "0123"_q, "nonsense"_q,
                  "--shared"_q});
         },
         false},
        {"!archive-missing", [&] { QFile::rename(mArchive, mArchive + ".away"_q); }, false},
        {"!archive-damaged", [&] { WriteFile(mArchive, "no archive"); }, false},
        {"!project-settings-damaged",
         [&] {
             const QString text = "#BEGINPREFS \"G\" x"_q;
             WriteFile(GetPath("Project/Project.prefs"),
                       QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2));
             WriteFile(GetPath("PrinterFiles/a"), "<< /A 1 >> setdistillerparams");
             Run({"zip"_q, "create"_q, mArchive, "Project"_q, "PrinterFiles"_q});
             QDir(GetPath("PrinterFiles")).removeRecursively();
         },
         true},
        {"!job-options-unusable", [&] { ReplaceArchive("<< /A 1 >>", "Trim"_q); }, false},
        {"!setting-odd", [&] { ReplaceArchive("<< /A 1 >> setdistillerparams", "Paper"_q); }, true},
        {"!icon-missing", [&] { Set("HopboxIconPath=/none.png"_q); }, true},
        {"application-missing", [&] { Set("ApplicationPath=/none.exe"_q); }, false},
        {"!of-another-user",
         [&] {
             const QString old = GetPath("Old/Morvane/Hopbox/Cache/Settings/Press/Project.hopbox");
             WriteFile(old, wholeArchive);
             Set("ContextFilePath="_q + old);
         },
         false},
        {"not-listed", [&] { Set("IsPlugin=false"_q); }, false},
        {"!same-text",
         [&] {
             Create("Other");
             Run({"set"_q, "Other"_q, "PDFSettings=Press"_q});
         },
         false},
        {"!same-name",
         [&] {
             Create("Other");
             Run({"prefs"_q, mRegistry, "--json"_q});
             const QJsonObject records = GetResult()["PrinterProcessorRegistry"_q].toObject();
             for (const QString& key : records.keys()) {
                 QString text =
                     "#BEGINDICT\n\"ActorName\" \"Same\"\n\"ApplicationPath\" \"%1\"\n"
                     "\"ContextFilePath\" \"%2\"\n\"PDFSettings\" \"%3\"\n#ENDDICT\n"_q;
                 text = text.arg(records[key]["ApplicationPath"_q].toString(),
                                 records[key]["ContextFilePath"_q].toString(), key);
                 text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
                 Run({"prefs"_q, mRegistry, "--set"_q, "PrinterProcessorRegistry"_q, key, text,
                      "--shared"_q});
             }
         },
         false},
        {"!folder-left", [&] { QDir().mkpath(mSettings + "/Left"_q); }, true},
        {"!archive-left", [&] { WriteFile(mSettings + "/Left/Project.hopbox"_q, "x"); }, false},
        {"!plug-in-settings-damaged",
         [&] { WriteFile(mPreferences + "Junctra_CC2019_64_InDesign/JunctraPlugins.pref"_q, "nonsense"); },
         false},
        {"!not-looked-at",
         [&] {
             QDir(mPreferences).removeRecursively();
             WriteFile(mPreferences.chopped(1), "a file in the place of the folder");
         },
         false},
        {"log", [&] { WriteFile(mPreferences + "Morvane.log"_q, "x"); }, false},
        {"receiver-ended", [&] { PrinterProcessor(mSandbox, {}).Kill(); }, true},
        {"work-folder",
         [&] { WriteFile(GetPath("Temp/") + PSystem::GetLogonName() + "/Press/a.pdf"_q, "a pdf"); }, false},
        {"!temporary-folder",
         [&] {
             QDir(GetPath("Temp")).removeRecursively();
             WriteFile(GetPath("Temp"), "a file in the place of the folder");
         },
         false},
    };
    for (const auto& [kind, damage, isMended] : cases) {
        SCOPED_TRACE(kind);
        QFile::remove(mPreferences.chopped(1));
        QDir(mAppData).removeRecursively();
        ASSERT_EQ(Create("Press"), 0);
        damage();
        const bool isProblem = *kind == '!';
        const QStringList found = Look();
        ASSERT_TRUE(found.contains(QLatin1String(kind)));
        EXPECT_EQ(mStatus, isProblem ? 1 : 0);
        for (const QJsonValue& finding : GetResult().toArray()) {
            EXPECT_FALSE(finding["text"_q].toString().isEmpty());
            EXPECT_TRUE(!finding["isProblem"_q].toBool() || !finding["mend"_q].toString().isEmpty());
        }
        const QStringList mended = Look({"--fix"_q});
        EXPECT_EQ(mended.contains(QLatin1String(kind) + "+"_q), isMended);
        EXPECT_EQ(Look().contains(QLatin1String(kind)), !isMended);
    }
}

TEST_F(DoctorTest, TellsWhichHopboxNoReceiverTakes)
{
    PrinterProcessor receiver(mSandbox, {"--hopbox"_q, "Press"_q});
    EXPECT_EQ(Look(), QStringList());
    Create("Other");
    EXPECT_EQ(Look(), QStringList("!not-received"_q));
    EXPECT_TRUE(mOutput.contains("No running receiver takes the jobs of \\\"Other\\\"."));
}

TEST_F(DoctorTest, TellsWhyAMendFails)
{
    WriteFile(GetPath("PrinterFiles/b"), "a file that is kept as it is");
    ReplaceArchive("<< /A 1 >> setdistillerparams", "Paper"_q);
    const QByteArray damaged = ReadFile(mArchive).replace("that is kept", "that is lost");
    ASSERT_TRUE(damaged.contains("that is lost"));
    WriteFile(mArchive, damaged);
    EXPECT_TRUE(Look({"--fix"_q}).contains("!setting-odd"_q));
    EXPECT_TRUE(mError.contains("PrinterFiles/b"));
    EXPECT_EQ(ReadFile(mArchive), damaged);
}

TEST_F(DoctorTest, TellsThatNoReceiverRuns)
{
    EXPECT_EQ(Look(), QStringList("!no-receiver"_q));
    ASSERT_EQ(Run({"doctor"_q}), 1);
    EXPECT_TRUE(mOutput.startsWith("problem: No receiver is running that could take a job.\n") &&
                mOutput.contains("\n    PrinterProcessorWin.exe --inbox DIR "));
    PrinterProcessor receiver(mSandbox, {});
    ASSERT_EQ(Run({"doctor"_q}), 0);
    EXPECT_EQ(mOutput, "All is well.\n");
}
