#include "FileHandlerFixture.h"

#include <map>

TEST_F(FileHandlerTest, SizesStayInAUnitUpToTwoThousand)
{
    constexpr qint64 cKilo = 1024;
    constexpr qint64 cTera = cKilo * cKilo * cKilo * cKilo;
    const std::map<qint64, const char*> cases = {{0, "0 bytes"},
                                                 {1999, "1999 bytes"},
                                                 {2000, "1.95 KB"},
                                                 {12345 * cKilo, "12.1 MB"},
                                                 {3 * cTera / cKilo, "3 GB"},
                                                 {4000 * cTera, "4000 TB"}};
    for (const auto& entry : cases)
        EXPECT_EQ(mHandler.formatSize(entry.first).toStdString(), entry.second);
}

TEST_F(FileHandlerTest, LongFormsOfPaths)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"C:\\a", "\\\\?\\C:\\a", false},
        {"c:/a/b", "\\\\?\\c:\\a\\b", false},
        {"//srv/share/a", "\\\\?\\UNC\\srv\\share\\a", true},
        {"\\\\.\\COM1", "\\\\.\\COM1", false},
        {"\\\\?\\UNC\\srv\\a", "\\\\?\\UNC\\srv\\a", false},
        {"C:name", "C:name", false}};
    for (const auto& [path, longForm, isUnc] : cases) {
        EXPECT_EQ(mHandler.longFileName(QString::fromLatin1(path)).toStdString(), longForm);
        EXPECT_EQ(mHandler.isUncPath(QString::fromLatin1(path)), isUnc) << path;
    }
    EXPECT_EQ(mHandler.ConvertPath("a//b/./c/"_q), "a/b/c"_q);
}

TEST_F(FileHandlerTest, VersionNamesCountUp)
{
    QString path;
    EXPECT_TRUE(mHandler.getVersionName(At("x.pdf"), &path));
    EXPECT_EQ(path, At("x.pdf"));
    MakeAll("x.pdf x_2.pdf folder/x.pdf");
    EXPECT_TRUE(mHandler.getVersionName(At("x.pdf"), &path));
    EXPECT_EQ(path, At("x_3.pdf"));

    for (const auto& [folder, expected] : {Texts{"new", "new"}, Texts{"folder", "folder/x_2.pdf"}}) {
        path = At(folder);
        EXPECT_TRUE(mHandler.UpdateFileDestination(At("x.pdf"), &path));
        EXPECT_EQ(path, At(expected));
    }
    path = mSandbox.GetPath();
    EXPECT_TRUE(mHandler.UpdateFolderDestination("elsewhere/folder"_q, &path));
    EXPECT_EQ(path, At("folder_2"));
}

TEST_F(FileHandlerTest, MadeNamesAreNewAndInTheirPlace)
{
    const auto relative = [this](const QString& path) {
        return WithoutRandom(QDir(mSandbox.GetPath()).relativeFilePath(path));
    };
    EXPECT_EQ(relative(mHandler.createTempItem("work"_q, At(""), true)), "work_#####");
    EXPECT_EQ(relative(mHandler.getTempFilePath("a.tar.gz"_q)), "Temp/a.tar_#####.gz");
    EXPECT_EQ(relative(mHandler.createTempFolderForFile("/some/where/name.pdf"_q)), "Temp/name_#####");
    EXPECT_EQ(Tree(), "Temp/name_#####/ work_#####/");
    EXPECT_EQ(mHandler.createTempItem("work"_q, At("missing"), true), QString());
    EXPECT_EQ(Errors(), "createTempItem|Can't create directory: missing");
    EXPECT_EQ(relative(mHandler.createNameForDelete(At(".~#~abc_del__12345"))), ".~#~12345_del__#####");
}
