#include "HopboxCommandsFixture.h"

TEST_F(HopboxCommands, AHopboxMovesInOneFile)
{
    WriteFile(GetPath("logo.png"), "icon");
    ASSERT_EQ(Run("create|Press|--job-options|a.joboptions|--setting|Trim=true|--icon|logo.png|--pdf-"
                  "settings|Coated"),
              0);
    ASSERT_EQ(Run("export|Press|Press.hopbox"), 0);
    EXPECT_EQ(Run("import|Press.hopbox"), 1);
    EXPECT_TRUE(mError.contains("registered as \"Press\" already"));
    ASSERT_EQ(Run("import|Press.hopbox|--name|Copy"), 0);
    ASSERT_EQ(Run("delete|Copy"), 0);

    // Another user's folders.
    ASSERT_TRUE(QDir().mkpath(GetPath("Old")) && QDir().rename(GetPath("AppData"), GetPath("Old/AppData")));
    ASSERT_TRUE(QFile::remove(GetPath("logo.png")));
    ASSERT_EQ(Run("import|Press.hopbox"), 0);
    ASSERT_EQ(Run("check|Press|--json"), 0);
    EXPECT_EQ(GetObject().value("Settings"_q), (QJsonObject{{"Trim"_q, "true"_q}}));
    EXPECT_TRUE(GetObject().value("Notes"_q).toArray().isEmpty());
    ASSERT_EQ(Run("show|Press|--json"), 0);
    EXPECT_EQ(GetText("PDFSettings"), "Coated"_q);
    EXPECT_EQ(ReadFile(GetText("HopboxIconPath")), "icon");
    for (const char* path : {"ContextFilePath", "HopboxIconPath", "ApplicationPath"})
        EXPECT_TRUE(QDir::fromNativeSeparators(GetText(path)).startsWith(GetPath("AppData"))) << path;
    ASSERT_EQ(Run("delete|Press"), 0);
    EXPECT_FALSE(QFileInfo::exists(GetAppData("Morvane/Hopbox/Cache/Settings/Press"))) << "the icon goes too";

    // A copy by hand is told.
    ASSERT_EQ(Create("Other"_q), 0);
    ASSERT_EQ(Run("set|Other|ContextFilePath=Old/AppData/Morvane/Hopbox/Cache/Settings/Press/Project.hopbox"),
              0);
    ASSERT_EQ(Run("check|Other"), 0);
    EXPECT_TRUE(mOutput.contains("lies among another user's Hopboxes"));
}

TEST_F(HopboxCommands, AFileThatIsNoHopboxIsNotImported)
{
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run("export|Press|Press.hopbox"), 0);
    ASSERT_EQ(Run("zip|extract|Press.hopbox|good"), 0);
    const auto pack = [this](const char* name, const char* change, const QByteArray& content) {
        QDir(GetPath("Hopbox")).removeRecursively();
        EXPECT_TRUE(QDir().mkpath(GetPath("Hopbox")));
        for (const char* part : {"Record", "Project.hopbox"})
            WriteFile(GetPath("Hopbox/") + QLatin1String(part),
                      ReadFile(GetPath("good/Hopbox/") + QLatin1String(part)));
        content.isEmpty() ? QFile::remove(GetPath("Hopbox/") + QLatin1String(change))
                          : WriteFile(GetPath("Hopbox/") + QLatin1String(change), content);
        EXPECT_EQ(Run({"zip"_q, "create"_q, QLatin1String(name), "Hopbox"_q}), 0);
    };
    ASSERT_EQ(Run("delete|Press"), 0);
    pack("NoRecord.hopbox", "Record", "");
    pack("BadRecord.hopbox", "Record", "nonsense");
    pack("NoProject.hopbox", "Project.hopbox", "");
    pack("BadProject.hopbox", "Project.hopbox", "nonsense");
    const QStringList before = ListFiles();
    const std::pair<const char*, const char*> cases[] = {
        {"none.hopbox", "there is no file \"none.hopbox\""},
        {"a.joboptions", "It is no file that \"hopboxctl export\" makes."},
        {"NoRecord.hopbox", "It holds no Hopbox."},
        {"BadRecord.hopbox", "It holds no Hopbox."},
        {"NoProject.hopbox", "\"NoProject.hopbox\" can't be imported. "},
        {"BadProject.hopbox", "\"BadProject.hopbox\" can't be imported. "},
    };
    for (const auto& [file, error] : cases) {
        EXPECT_EQ(Run({"import"_q, QLatin1String(file)}), 1) << file;
        EXPECT_TRUE(mError.contains(error));
    }
    EXPECT_EQ(ListFiles(), before);
    EXPECT_EQ(Run("list|--names"), 0);
    EXPECT_TRUE(mOutput.isEmpty());
}

TEST_F(HopboxCommands, ExportOverwritesNothingThatAHopboxNeeds)
{
    WriteFile(GetPath("logo.png"), "icon");
    WriteFile(GetPath("program"), "program");
    ASSERT_EQ(Run("create|Press|--job-options|a.joboptions|--icon|logo.png|--application|program"), 0);
    ASSERT_EQ(Create("Other"_q), 0);
    const QString settings = "AppData/Morvane/Hopbox/Cache/Settings"_q;
    const QString link = GetPath("link");
    const bool hasLinks =
        QFile::link(GetPath("logo.png"), link) && !link.endsWith(".lnk"_q) && QFileInfo(link).isSymLink();
    QStringList inUse = {settings + "/Press/Project.hopbox"_q,
                         settings + "/../Settings/Other/Project.hopbox"_q, "logo.png"_q, "program"_q,
                         "AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs"_q};
    if (hasLinks)
        inUse.append("link"_q);
    const QMap<QString, QByteArray> before = ReadTree(mSandbox.GetPath());
    for (const QString& file : inUse) {
        EXPECT_EQ(Run({"export"_q, "Press"_q, file}), 1) << file.toStdString();
        EXPECT_TRUE(mError.contains("belongs to your Hopboxes"));
    }
    EXPECT_EQ(ReadTree(mSandbox.GetPath()), before);
    WriteFile(GetPath("Press.hopbox"), "an older one");
    EXPECT_EQ(Run("export|Press|Press.hopbox"), 0);
}
