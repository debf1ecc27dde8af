#include "ExportFixture.h"
#include "export/SmartFileList.h"

static const GBuffer cChoice = "IncludeFilePackageChecked";

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

TEST_F(PlugInPreferencesTest, PruningForgetsTheChoicesOfHopboxesThatAreNotListed)
{
    for (const QString& group : {"Gr\u00F6\u00DFe"_q, "Withdrawn"_q, "Gone \u65E5\u672C"_q})
        PlugInPreferences::SetPackageChoice(group, true);
    GPreferences::Set(GPreferences::cUserFileModule, "Withdrawn", "More", true);
    GPreferences::Set(GPreferences::cUserFileModule, "Foreign", "Key", true);
    PlugInPreferences::SetLastSelection("Withdrawn"_q);

    PlugInPreferences::Prune({"Gr\u00F6\u00DFe"_q});

    const PlugInPrefModule file(PlugInStore::GetFile());
    EXPECT_TRUE(file.Has("Gr\u00F6\u00DFe"_q.toUtf8(), cChoice));
    EXPECT_FALSE(file.Has("Withdrawn", "More"));
    EXPECT_FALSE(file.Has("Gone \u65E5\u672C"_q.toUtf8(), cChoice));
    EXPECT_TRUE(file.Has("Foreign", "Key"));
    EXPECT_EQ(PlugInPreferences::GetLastSelection(), "Withdrawn"_q);
}

TEST_F(PlugInPreferencesTest, AFlushKeepsWhatAnotherHostHasWrittenMeanwhile)
{
    const auto set = [](GPrefModule& module, const char* key, const char* value) {
        module.Set("G", key, QString::fromLatin1(value));
    };
    PlugInPrefModule one(PlugInStore::GetFile());
    set(one, "old", "1");
    set(one, "gone", "1");
    one.FlushPrefs();
    PlugInPrefModule other(PlugInStore::GetFile());
    set(one, "one", "1");
    one.Remove("G", "gone");
    set(other, "other", "2");
    set(other, "old", "2");
    other.FlushPrefs();
    one.FlushPrefs();
    EXPECT_EQ(one.Get("G", "other"), "2"_q);

    // A change that can't be made leaves what was not flushed to the next flush.
    set(one, "late", "3");
    EXPECT_THROW(one.ChangeUnderLock([](GPrefModule&) { throw std::runtime_error("refused"); }),
                 std::runtime_error);
    EXPECT_TRUE(one.IsDirty());
    one.FlushPrefs();

    const PlugInPrefModule file(PlugInStore::GetFile());
    GPrefGroup group;
    file.GetGroupPreferences("G", group);
    EXPECT_EQ(group.GetCount(), 4);
    EXPECT_EQ(file.Get("G", "old"), "2"_q);
    EXPECT_EQ(file.Get("G", "late"), "3"_q);
    EXPECT_FALSE(file.Has("G", "gone"));
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
