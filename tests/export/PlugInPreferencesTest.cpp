#include "ExportFixture.h"
#include "export/SmartFileList.h"
#include "hopbox/HopboxRegistry.h"

static const GBuffer cChoice = "IncludeFilePackageChecked";

class PlugInPreferencesTest : public ExportFixture
{
};

TEST_F(PlugInPreferencesTest, ChoicesOutliveTheProcessAndReadAsNothingWhereTheFileIsDamaged)
{
    PlugInPreferences::SetLastSelection(QStringLiteral("key"));
    PlugInPreferences::SetPackageChoice(QStringLiteral("Gr\u00F6\u00DFe"), true);
    PlugInPreferences::SetPackageChoice(QString(), true);
    GPreferences::FlushPrefs();
    const auto reopen = [] {
        GPreferences::SetPrefModule(GPreferences::cUserFileModule,
                                    std::make_unique<PlugInPrefModule>(PlugInStore::GetFile()));
    };
    reopen();
    EXPECT_EQ(PlugInPreferences::GetLastSelection(), QStringLiteral("key"));
    EXPECT_TRUE(PlugInPreferences::HasPackageChoice(QStringLiteral("Gr\u00F6\u00DFe")));
    EXPECT_TRUE(PlugInPreferences::GetPackageChoice(QStringLiteral("Gr\u00F6\u00DFe")));
    EXPECT_FALSE(PlugInPreferences::HasPackageChoice(QString()));
    ASSERT_TRUE(WriteFile(PlugInStore::GetFile().GetNativePath(), "\xFF\xFE no settings"));
    reopen();
    EXPECT_TRUE(PlugInPreferences::GetLastSelection().isEmpty());
    EXPECT_FALSE(PlugInPreferences::HasPackageChoice(QStringLiteral("Gr\u00F6\u00DFe")));
}

TEST_F(PlugInPreferencesTest, PruningForgetsTheChoicesOfHopboxesThatAreNotListed)
{
    HopboxRegistry registry;
    HopboxRegistryEntry entry;
    entry.isPlugin = true;
    GString unnamed;
    registry.AddEntry(QStringLiteral("Listed"), entry);
    registry.AddEntry(QString(), entry, &unnamed);
    entry.isPlugin = false;
    registry.AddEntry(QStringLiteral("Withdrawn"), entry);
    for (const QString& group : {QStringLiteral("Listed"), unnamed, QStringLiteral("Withdrawn"),
                                 QStringLiteral("Gone \u65E5\u672C")})
        PlugInPreferences::SetPackageChoice(group, true);
    GPreferences::Set(GPreferences::cUserFileModule, "Withdrawn", "More", true);
    GPreferences::Set(GPreferences::cUserFileModule, "Foreign", "Key", true);
    PlugInPreferences::SetLastSelection(QStringLiteral("Withdrawn"));

    PlugInPreferences::Prune(PlugInPreferences::GetListedGroups());

    const PlugInPrefModule file(PlugInStore::GetFile());
    EXPECT_TRUE(file.Has("Listed", cChoice));
    EXPECT_TRUE(file.Has(unnamed.toUtf8(), cChoice));
    EXPECT_FALSE(file.Has("Withdrawn", "More"));
    EXPECT_FALSE(file.Has(QStringLiteral("Gone \u65E5\u672C").toUtf8(), cChoice));
    EXPECT_TRUE(file.Has("Foreign", "Key"));
    EXPECT_EQ(PlugInPreferences::GetLastSelection(), QStringLiteral("Withdrawn"));
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
    EXPECT_EQ(one.Get("G", "other"), QStringLiteral("2"));

    // A change that can't be made leaves what was not flushed to the next flush.
    set(one, "late", "3");
    EXPECT_THROW(one.Change([](GPrefModule&) { throw std::runtime_error("refused"); }), std::runtime_error);
    EXPECT_TRUE(one.IsDirty());
    one.FlushPrefs();

    const PlugInPrefModule file(PlugInStore::GetFile());
    GPrefGroup group;
    file.GetGroupPreferences("G", group);
    EXPECT_EQ(group.GetCount(), 4);
    EXPECT_EQ(file.Get("G", "old"), QStringLiteral("2"));
    EXPECT_EQ(file.Get("G", "late"), QStringLiteral("3"));
    EXPECT_FALSE(file.Has("G", "gone"));
}

TEST_F(PlugInPreferencesTest, OnlyTheFirstStartAndTheLastEndSweep)
{
    const GPathName path = GetTemporary().GetChild(QStringLiteral("left"));
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
