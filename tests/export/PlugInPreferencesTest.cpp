#include "ExportFixture.h"
#include "export/SmartFileList.h"

class PlugInPreferencesTest : public ExportFixture
{
};

TEST_F(PlugInPreferencesTest, ChoicesOutliveTheProcessAndReadAsNothingWhereTheFileIsDamaged)
{
    PlugInPreferences::SetLastSelection("key"_q);
    PlugInPreferences::SetPackageChoice("Gr\u00F6\u00DFe"_q, true);
    PlugInPreferences::SetPackageChoice(QString(), true);
    GPreferences::FlushPrefs();
    store.Reopen();
    EXPECT_EQ(PlugInPreferences::GetLastSelection(), "key"_q);
    EXPECT_TRUE(PlugInPreferences::HasPackageChoice("Gr\u00F6\u00DFe"_q));
    EXPECT_TRUE(PlugInPreferences::GetPackageChoice("Gr\u00F6\u00DFe"_q));
    EXPECT_FALSE(PlugInPreferences::HasPackageChoice(QString()));
    ASSERT_TRUE(WriteFile(PlugInStore::GetFile().GetNativePath(), "\xFF\xFE no settings"));
    store.Reopen();
    EXPECT_TRUE(PlugInPreferences::GetLastSelection().isEmpty());
    EXPECT_FALSE(PlugInPreferences::HasPackageChoice("Gr\u00F6\u00DFe"_q));
}

TEST_F(PlugInPreferencesTest, AFlushKeepsWhatAnotherHostHasWrittenMeanwhile)
{
    PlugInPrefModule one(PlugInStore::GetFile());
    PlugInPrefModule other(PlugInStore::GetFile());
    one.Set("G", "one", "1"_q);
    other.Set("G", "other", "1"_q);
    other.FlushPrefs();
    one.FlushPrefs();
    GPrefGroup group;
    PlugInPrefModule(PlugInStore::GetFile()).GetGroupPreferences("G", group);
    EXPECT_EQ(group.GetCount(), 2);
}

TEST_F(PlugInPreferencesTest, OnlyTheFirstStartAndTheLastEndSweep)
{
    const GPathName path = GetTemporary().GetChild("left"_q);
    const auto isSwept = [&](void (*step)()) {
        EXPECT_TRUE(WriteFile(path.GetNativePath(), "x"));
        SmartFileList::Add(path);
        step();
        return !QFileInfo::exists(path.GetNativePath());
    };
    EXPECT_TRUE(isSwept(PlugInPreferences::Initialize));
    EXPECT_FALSE(isSwept(PlugInPreferences::Initialize));
    EXPECT_FALSE(isSwept(PlugInPreferences::Release));
    EXPECT_TRUE(isSwept(PlugInPreferences::Release));
    EXPECT_FALSE(isSwept(PlugInPreferences::Release));
}
