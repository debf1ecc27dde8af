#include "hopbox/HopboxProject.h"

#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "tests/support/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using Morvane::ZipArchive;
using Morvane::ZipArchiver;
using Morvane::ZipNames;

static const GBuffer cKey = "UserSettings";
static const GString cJobOptionsName = QStringLiteral("\u65E5\u672C Gr\u00F6\u00DFe.joboptions");

static void WriteFile(const QString& path, const QByteArray& content)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
}

static QByteArray ReadFile(const GPathName& path)
{
    QFile file(path.GetNativePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

static QStringList ListTree(const QString& folder)
{
    QStringList names;
    for (const QFileInfo& file :
         QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        names.append(file.fileName());
        if (file.isDir())
            names += ListTree(file.filePath());
    }
    return names;
}

// A sandbox with a project archive that was made from a setting and job options.
class HopboxProjectTest : public testing::Test
{
protected:
    HopboxProjectTest() : archive(mSandbox.GetPath(QStringLiteral("Project.hopbox"))) {}

    void MakeProject(const char* setting)
    {
        const QString jobOptions = mSandbox.GetPath(QStringLiteral("from/") + cJobOptionsName);
        WriteFile(jobOptions, "<< /A 1 >>");
        HopboxProject project(archive);
        ASSERT_TRUE(project.Create(GPathName(jobOptions), MakeSettings(setting)))
            << project.GetLastError().toStdString();
    }

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
        settings.Set(HopboxProject::GetPlugInGroup(), cKey, QStringLiteral("(before)"));
        HopboxProject project(archive);
        const bool isRead = project.ReadSettings(settings);
        EXPECT_EQ(isRead, project.GetLastError().isEmpty());
        return isRead ? settings.Get(HopboxProject::GetPlugInGroup(), cKey) : QStringLiteral("(none)");
    }

    GPathName ExtractJobOptions()
    {
        GPathName jobOptions;
        HopboxProject project(archive);
        const bool isExtracted = project.ExtractJobOptions(GPathName(GetFolder()), jobOptions);
        EXPECT_EQ(isExtracted, project.GetLastError().isEmpty());
        EXPECT_EQ(isExtracted, !jobOptions.IsEmpty());
        return jobOptions;
    }

    // Makes an archive with the entries of these names; folders end in '/'. Settings get what `settings`
    // says.
    void MakeArchive(const QStringList& names, const QByteArray& settings)
    {
        ZipArchiver archiver(archive.GetPortablePath());
        ASSERT_TRUE(archiver.StartWriting(Morvane::ZipStart::Create, QString(), 0));
        for (const QString& name : names) {
            const bool isFolder = name.endsWith(QLatin1Char('/'));
            const QString source = isFolder ? mSandbox.GetPath() : mSandbox.GetPath(QStringLiteral("source"));
            if (!isFolder)
                WriteFile(source, name.endsWith(QLatin1String("prefs")) ? settings : name.toUtf8());
            ASSERT_TRUE(archiver.AddFile(source, name, 0, ZipNames::Plain, QString())) << name.toStdString();
        }
        ASSERT_TRUE(archiver.FinishWriting());
    }

    QString GetFolder() const { return mSandbox.GetPath(QStringLiteral("to")); }

    const Sandbox mSandbox;
    const GPathName archive;
};

TEST_F(HopboxProjectTest, SettingsAndJobOptionsComeBackFromAProtectedArchive)
{
    MakeProject("Gr\u00F6\u00DFe \u65E5 \"1\"");
    EXPECT_EQ(ReadSetting(), QStringLiteral("Gr\u00F6\u00DFe \u65E5 \"1\""));
    const GPathName jobOptions = ExtractJobOptions();
    EXPECT_EQ(jobOptions, GPathName(GetFolder()).GetChild(QStringLiteral("PrinterFiles/") + cJobOptionsName));
    EXPECT_EQ(ReadFile(jobOptions), "<< /A 1 >>");

    ZipArchive zip(archive.GetPortablePath());
    int count = 0;
    for (zip.StartIterate(); !zip.AtEnd(); zip.Next(), ++count) {
        EXPECT_TRUE(zip.ExtractCurrentToMemory(QString()).isNull()) << zip.GetCurrentFileName().toStdString();
        EXPECT_TRUE(zip.ExtractCurrentToMemory(QStringLiteral("password")).isNull());
    }
    EXPECT_EQ(count, 2);
}

TEST_F(HopboxProjectTest, WritingSettingsKeepsTheOtherFilesAndLeavesNothingBeside)
{
    const QStringList names = {QStringLiteral("PrinterFiles/"),
                               QStringLiteral("PrinterFiles/a.joboptions"),
                               QStringLiteral("Project/Project.prefs"),
                               QStringLiteral("Project/icon \u65E5.png"),
                               QStringLiteral("A/a"),
                               QStringLiteral("a/A")};
    MakeArchive(names, QByteArray());
    HopboxProject project(archive);
    ASSERT_TRUE(project.WriteSettings(MakeSettings("new"))) << project.GetLastError().toStdString();
    EXPECT_EQ(ReadSetting(), QStringLiteral("new"));
    EXPECT_EQ(ReadFile(ExtractJobOptions()), "PrinterFiles/a.joboptions");
    QStringList left = ZipArchive(archive.GetPortablePath()).GetFileList();
    QStringList files = names.mid(1);
    left.sort();
    files.sort();
    EXPECT_EQ(left, files);
    EXPECT_EQ(ListTree(mSandbox.GetPath(QStringLiteral("Temp"))), QStringList());
}

TEST_F(HopboxProjectTest, ArchivesOfAnyToolAreReadAsFarAsTheyServe)
{
    const QString settings = QStringLiteral("Project/Project.prefs");
    const QByteArray document("\xFF\xFE#\0B\0E\0G\0I\0N\0P\0R\0E\0F\0S\0\n\0", 26);
    const struct
    {
        QStringList names;
        QByteArray settings;
        bool hasSettings;
        const char* jobOptions;
    } cases[] = {
        {{QStringLiteral("PrinterFiles/"), QStringLiteral("PrinterFiles/b"), QStringLiteral("PrinterFiles/a"),
          settings},
         document,
         true,
         "PrinterFiles/b"},
        {{settings, QStringLiteral("x/PrinterFiles/y/z")}, document.mid(2), true, "x/PrinterFiles/y/z"},
        {{settings, QStringLiteral("PrinterFiles/")}, document, false, nullptr},
        {{settings, QStringLiteral("printerfiles/a")}, document, false, nullptr},
        {{settings}, document, false, nullptr},
        {{}, document, false, nullptr},
        {{QStringLiteral("PrinterFiles/a")}, document, false, "PrinterFiles/a"},
        {{QStringLiteral("PrinterFiles/a"), QStringLiteral("x/Project/Project.prefs")},
         document,
         false,
         "PrinterFiles/a"},
        {{QStringLiteral("PrinterFiles/a"), settings}, "no document", false, "PrinterFiles/a"},
        {{QStringLiteral("PrinterFiles/a"), settings}, "", false, "PrinterFiles/a"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.names.join(QLatin1Char(' ')).toStdString());
        MakeArchive(test.names, test.settings);
        EXPECT_EQ(ReadSetting(), test.hasSettings ? QStringLiteral("(before)") : QStringLiteral("(none)"));
        const GPathName jobOptions = ExtractJobOptions();
        EXPECT_EQ(jobOptions.IsEmpty() ? nullptr : ReadFile(jobOptions), QByteArray(test.jobOptions));
        QDir(GetFolder()).removeRecursively();
    }
}

TEST_F(HopboxProjectTest, HostileArchivesWriteNothing)
{
    const QByteArray plainName = "PrinterFiles/xx/xx/evil";
    for (const QByteArray& name :
         {QByteArray("PrinterFiles/../../evil"), QByteArray("/PrinterFiles/x/x/evi")}) {
        SCOPED_TRACE(name.toStdString());
        MakeArchive({QString::fromLatin1(plainName), QStringLiteral("Project/Project.prefs")}, "#BEGINPREFS");
        QByteArray bytes = ReadFile(archive);
        WriteFile(archive.GetNativePath(),
                  bytes.replace(plainName, name.leftJustified(plainName.size(), 'l')));
        const QStringList before = ListTree(mSandbox.GetPath());
        EXPECT_TRUE(ExtractJobOptions().IsEmpty());
        EXPECT_EQ(ListTree(mSandbox.GetPath()), before);
    }
    MakeProject("old");
    const QByteArray whole = ReadFile(archive);
    for (int size = 0; size < whole.size(); size += 7) {
        SCOPED_TRACE(size);
        WriteFile(archive.GetNativePath(), whole.left(size));
        EXPECT_EQ(ReadSetting(), QStringLiteral("(none)"));
        EXPECT_TRUE(ExtractJobOptions().IsEmpty());
        EXPECT_EQ(ListTree(GetFolder()), QStringList());
        HopboxProject project(archive);
        EXPECT_FALSE(project.WriteSettings(MakeSettings("new")));
        EXPECT_EQ(ReadFile(archive), whole.left(size));
    }
}
