#include "FileHandlerFixture.h"

#include <QRegularExpression>

TEST_F(FileHandlerTest, SizesStayInAUnitUpToTwoThousand)
{
    struct Case
    {
        qint64 bytes;
        const char* text;
    };
    constexpr qint64 cKilo = 1024;
    for (const Case& entry :
         {Case{0, "0 bytes"}, Case{1, "1 bytes"}, Case{1999, "1999 bytes"}, Case{2000, "1.95 KB"},
          Case{1023 * cKilo, "1023 KB"}, Case{999 * cKilo, "999 KB"}, Case{1999 * cKilo, "1999 KB"},
          Case{2000 * cKilo, "1.95 MB"}, Case{12345 * cKilo, "12.1 MB"},
          Case{3 * cKilo * cKilo * cKilo, "3 GB"}, Case{5 * cKilo * cKilo * cKilo * cKilo, "5 TB"},
          Case{4000 * cKilo * cKilo * cKilo * cKilo, "4000 TB"},
          Case{1999 * cKilo * cKilo * cKilo * cKilo, "1999 TB"}})
        EXPECT_EQ(mHandler.formatSize(entry.bytes).toStdString(), entry.text) << entry.bytes;
}

TEST_F(FileHandlerTest, LongFormsOfPaths)
{
    struct Case
    {
        const char* path;
        const char* longForm;
        bool isUnc;
    };
    for (const Case& entry :
         {Case{"C:\\a", "\\\\?\\C:\\a", false}, Case{"c:/a/b", "\\\\?\\c:\\a\\b", false},
          Case{"\\\\srv\\share\\a", "\\\\?\\UNC\\srv\\share\\a", true},
          Case{"//srv/share/a", "\\\\?\\UNC\\srv\\share\\a", true}, Case{"\\\\.\\COM1", "\\\\.\\COM1", false},
          Case{"\\\\?\\C:\\a", "\\\\?\\C:\\a", false},
          Case{"\\\\?\\UNC\\srv\\a", "\\\\?\\UNC\\srv\\a", false}, Case{"name", "name", false},
          Case{"C:name", "C:name", false}, Case{"", "", false}}) {
        EXPECT_EQ(mHandler.longFileName(QString::fromLatin1(entry.path)).toStdString(), entry.longForm);
        EXPECT_EQ(mHandler.isUncPath(QString::fromLatin1(entry.path)), entry.isUnc) << entry.path;
    }
    EXPECT_EQ(mHandler.ConvertPath("a//b/./c/"_q), "a/b/c"_q);
}

TEST_F(FileHandlerTest, SlashesAtTheEndGoButARootStays)
{
    for (const auto& [text, rest] :
         {Texts{"a/b//", "a/b"}, Texts{"a", "a"}, Texts{"/", "/"}, Texts{"///", "/"}, Texts{"C:/", "C:/"},
          Texts{"C:/a/", "C:/a"}, Texts{"", ""}}) {
        QString path = QString::fromLatin1(text);
        EXPECT_EQ(mHandler.splitOffSlashesFromPath(&path), qstrcmp(text, rest) != 0) << text;
        EXPECT_EQ(path.toStdString(), rest);
    }
}

TEST_F(FileHandlerTest, VersionNamesCountUp)
{
    QString path;
    EXPECT_TRUE(mHandler.getVersionName(At("x.pdf"), &path));
    EXPECT_EQ(path, At("x.pdf"));
    MakeAll({"x.pdf", "x_2.pdf"});
    EXPECT_TRUE(mHandler.getVersionName(At("x.pdf"), &path));
    EXPECT_EQ(path, At("x_3.pdf"));

    QString destination = At("folder");
    EXPECT_TRUE(mHandler.UpdateFileDestination(At("x.pdf"), &destination));
    EXPECT_EQ(destination, At("folder"));
    Make("folder/x.pdf");
    EXPECT_TRUE(mHandler.UpdateFileDestination(At("x.pdf"), &destination));
    EXPECT_EQ(destination, At("folder/x_2.pdf"));
    destination = mSandbox.GetPath();
    EXPECT_TRUE(mHandler.UpdateFolderDestination("elsewhere/folder"_q, &destination));
    EXPECT_EQ(destination, At("folder_2"));
}

TEST_F(FileHandlerTest, TemporaryItemsAreNewAndInTheirPlace)
{
    const QString folder = mHandler.createTempItem("work"_q, At(""), true);
    EXPECT_TRUE(QRegularExpression("/work_[0-9a-f]{5}$"_q).match(folder).hasMatch()) << folder.toStdString();
    EXPECT_TRUE(QFileInfo(folder).isDir());
    EXPECT_EQ(mHandler.createTempItem("work"_q, At("missing"), true), QString());
    EXPECT_EQ(Errors(), "FileHandler::createTempItem|Can't create directory: missing");

    const QString path = mHandler.getTempFilePath("a.tar.gz"_q);
    EXPECT_TRUE(QRegularExpression("/a\\.tar_[0-9a-f]{5}\\.gz$"_q).match(path).hasMatch());
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(path.startsWith(At("Temp/")));
    const QString forFile = mHandler.createTempFolderForFile("/some/where/name.pdf"_q);
    EXPECT_TRUE(QFileInfo(forFile).isDir());
    EXPECT_TRUE(QFileInfo(forFile).fileName().startsWith(QLatin1String("name_")));
    EXPECT_TRUE(mHandler.removeFolder(forFile));
}
