#include "hopbox/HopboxProject.h"

#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/TemporaryFolder.h"
#include "tests/support/Test.h"

using Morvane::ZipArchive;
using Morvane::ZipArchiver;
using Morvane::ZipNames;

static const GBuffer cKey = "UserSettings";

// A sandbox with the place of a project archive.
class HopboxProjectTest : public testing::Test
{
protected:
    HopboxProjectTest() : archive(mSandbox.GetPath("Project.hopbox"_q)) {}

    static GPrefMemoryModule& MakeSettings(const char* setting)
    {
        static GPrefMemoryModule settings;
        settings.Set(HopboxProject::GetPlugInGroup(), cKey, GString::fromUtf8(setting));
        return settings;
    }

    // The setting that the archive gives.
    GString ReadSetting()
    {
        GPrefMemoryModule settings;
        settings.Set(HopboxProject::GetPlugInGroup(), cKey, "(before)"_q);
        const bool isRead = HopboxProject(archive).ReadSettings(settings).HasSucceeded();
        return isRead ? settings.Get(HopboxProject::GetPlugInGroup(), cKey) : "(none)"_q;
    }

    GPathName ExtractJobOptions()
    {
        GPathName jobOptions;
        const GResult extracted =
            HopboxProject(archive).ExtractJobOptions(GPathName(GetFolder()), jobOptions);
        EXPECT_EQ(extracted.HasSucceeded(), !jobOptions.IsEmpty());
        return jobOptions;
    }

    // Makes an archive with files of these names that hold their names; settings hold what `settings` says.
    void MakeArchive(const QStringList& names, const QByteArray& settings)
    {
        const QString source = mSandbox.GetPath("source"_q);
        ZipArchiver archiver(archive.GetPortablePath());
        ASSERT_TRUE(archiver.StartWriting(Morvane::ZipStart::Create, QString(), 0));
        for (const QString& name : names) {
            const bool isFolder = name.endsWith(QLatin1Char('/'));
            ASSERT_TRUE(WriteFile(source, name.endsWith("prefs"_q) ? settings : name.toUtf8()));
            ASSERT_TRUE(archiver.AddFile(isFolder ? mSandbox.GetPath() : source, name, 0, ZipNames::Plain,
                                         QString()));
        }
        ASSERT_TRUE(archiver.FinishWriting());
    }

    QString GetFolder() const { return mSandbox.GetPath("to"_q); }

    const Sandbox mSandbox;
    const GPathName archive;
};

TEST_F(HopboxProjectTest, SettingsAndJobOptionsComeBackFromAProtectedArchive)
{
    const GString name = "\u65E5\u672C Gr\u00F6\u00DFe.joboptions"_q;
    const GPathName source(mSandbox.GetPath("from/"_q + name));
    const char* const setting = "Gr\u00F6\u00DFe \u65E5 \"1\"";
    ASSERT_TRUE(WriteFile(source.GetNativePath(), "<< /A 1 >>"));
    ASSERT_EQ(HopboxProject(archive).Create(source, MakeSettings(setting)).GetReason(), QString());
    EXPECT_EQ(ReadSetting(), QString::fromUtf8(setting));
    const GPathName jobOptions = ExtractJobOptions();
    EXPECT_EQ(jobOptions, GPathName(GetFolder()).GetChild("PrinterFiles/"_q + name));
    EXPECT_EQ(ReadFile(jobOptions.GetNativePath()), "<< /A 1 >>");

    ZipArchive zip(archive.GetPortablePath());
    int count = 0;
    for (zip.StartIterate(); !zip.AtEnd(); zip.Next(), ++count) {
        EXPECT_TRUE(zip.ExtractCurrentToMemory(QString()).isNull()) << zip.GetCurrentFileName().toStdString();
        EXPECT_TRUE(zip.ExtractCurrentToMemory("password"_q).isNull());
    }
    EXPECT_EQ(count, 2);
}

TEST_F(HopboxProjectTest, WritingSettingsKeepsTheOtherFilesAndLeavesNothingBeside)
{
    const QStringList names =
        "PrinterFiles/|PrinterFiles/a.joboptions|Project/Project.prefs|Project/icon \u65E5.png|A/a|a/A"_list;
    MakeArchive(names, QByteArray());
    HopboxProject project(archive);
    ASSERT_EQ(project.WriteSettings(MakeSettings("new")).GetReason(), QString());
    EXPECT_EQ(ReadSetting(), "new"_q);
    EXPECT_EQ(ReadFile(ExtractJobOptions().GetNativePath()), "PrinterFiles/a.joboptions");
    QStringList left = ZipArchive(archive.GetPortablePath()).GetFileList();
    QStringList files = names.mid(1);
    left.sort();
    files.sort();
    EXPECT_EQ(left, files);
    EXPECT_EQ(ReadTree(mSandbox.GetPath("Temp"_q)).keys(), QStringList());

    const QByteArray half = ReadFile(archive.GetNativePath()).left(300);
    ASSERT_TRUE(WriteFile(archive.GetNativePath(), half));
    EXPECT_FALSE(project.WriteSettings(MakeSettings("lost")).HasSucceeded());
    EXPECT_EQ(ReadFile(archive.GetNativePath()), half);
}

TEST_F(HopboxProjectTest, ArchivesOfAnyToolAreReadAsFarAsTheyServe)
{
    const QByteArray document("\xFF\xFE#\0B\0E\0G\0I\0N\0P\0R\0E\0F\0S\0\n\0", 26);
    const std::tuple<QStringList, QByteArray, bool, const char*> cases[] = {
        {"PrinterFiles/|PrinterFiles/b|PrinterFiles/a|Project/Project.prefs"_list, document, true,
         "PrinterFiles/b"},
        {"Project/Project.prefs|x/PrinterFiles/y/z"_list, document.mid(2), true, "x/PrinterFiles/y/z"},
        {"Project/Project.prefs|PrinterFiles/"_list, document, false, nullptr},
        {"Project/Project.prefs|printerfiles/a"_list, document, false, nullptr},
        {{}, document, false, nullptr},
        {"PrinterFiles/a|x/Project/Project.prefs"_list, document, false, "PrinterFiles/a"},
        {"PrinterFiles/a|Project/Project.prefs"_list, "no document", false, "PrinterFiles/a"},
        {"PrinterFiles/a|Project/Project.prefs"_list, "", false, "PrinterFiles/a"},
    };
    for (const auto& [names, settings, hasSettings, extracted] : cases) {
        SCOPED_TRACE(names.join(QLatin1Char(' ')).toStdString());
        MakeArchive(names, settings);
        EXPECT_EQ(ReadSetting(), hasSettings ? "(before)"_q : "(none)"_q);
        const GPathName jobOptions = ExtractJobOptions();
        EXPECT_EQ(jobOptions.IsEmpty() ? nullptr : ReadFile(jobOptions.GetNativePath()),
                  QByteArray(extracted));
        QDir(GetFolder()).removeRecursively();
    }
}

TEST(TemporaryFolder, WhatSomebodyOnWindowsHasOpenGoesWithTheNextOne)
{
    const Sandbox sandbox;
    QFile held;
    {
        const TemporaryFolder folder;
        held.setFileName(folder.GetPathName().GetChild("held"_q).GetNativePath());
        ASSERT_TRUE(held.open(QIODevice::WriteOnly));
    }
    held.close();
    EXPECT_NE(TemporaryFolder().GetPathName(), GPathName());
    EXPECT_FALSE(QFile::exists(held.fileName()));
}
