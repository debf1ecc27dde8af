#include "ExportRun.h"
#include "export/ListOwner.h"
#include "export/ResultList.h"
#include "export/SmartFileList.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GOwnedFile.h"

#include <QDateTime>

using PlugInPreferencesTest = ExportFixture;

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

TEST_F(PlugInPreferencesTest, AnExportNotesItsResultsWhereTheyAreToGo)
{
    const GString key = MakeHopbox("Press"_q);
    for (const bool isNoted : {false, true}) {
        if (isNoted)
            GPreferences::Set(GPreferences::cUserFileModule, "General", "RemoveResultsAfterDays", 1);
        ExportParty party;
        party.Export(key);
        GPrefGroup noted;
        GPreferences::GetPrefModule(GPreferences::cUserFileModule)->GetGroupPreferences("Results", noted);
        EXPECT_EQ(noted.GetCount(), isNoted ? 1 : 0);
        const GString* const note = noted.Find(party.action.GetOutputPath().GetNativePath().toUtf8());
        ASSERT_EQ(note != nullptr, isNoted);
        if (note != nullptr) {
            EXPECT_EQ(note->section(QLatin1Char(' '), 1), ListOwner::GetOwnName(PlugInStore::GetFile()));
        }
    }
}

TEST_F(PlugInPreferencesTest, ResultsStayUnlessASettingGivesDays)
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    const qint64 day = 24 * 60 * 60;
    const GString owner = PlugInStore::GetFile().GetLeaf() + ".%1.owner"_q;
    const GString livingName = owner.arg("aaaaaaaaaaaa"_q), deadName = owner.arg("bbbbbbbbbbbb"_q);
    const GOwnedFile living([&] { return PlugInStore::GetFile().GetParent().GetChild(livingName); });
    const struct
    {
        const char* path;
        qint64 age;
        bool stays;
        GString owner = {};
    } cases[] = {{"Temp/anna/Press/old.pdf", 3 * day, false},
                 {"Temp/anna/Press/used.pdf", 3 * day, true, livingName},
                 {"Temp/anna/Press/unused.pdf", 3 * day, false, deadName},
                 {"Temp/anna/Press/new.pdf", day, true},
                 {"Temp/anna/Pack/p/a.indd", 3 * day, false},
                 {"Home/old.pdf", 3 * day, true},
                 {"Temp/anna/Press/later.pdf", -day, true}};
    // Where nobody can look it may still be there.
    const QString unseen = GetSandbox().GetPath("Temp/anna/"_q + QString(300, QLatin1Char('x')));
    GPrefModule& module = *GPreferences::GetPrefModule(GPreferences::cUserFileModule);
    for (const auto& each : cases) {
        const QString path = GetSandbox().GetPath(QString::fromLatin1(each.path));
        ASSERT_TRUE(WriteFile(path, "x"));
        const QString item = path.endsWith("indd"_q) ? QFileInfo(path).path() : path;
        module.Set("Results", QDir::toNativeSeparators(item).toUtf8(),
                   QString::number(now - each.age) + QLatin1Char(' ') + each.owner);
    }
    module.Set("Results", QDir::toNativeSeparators(unseen).toUtf8(), QString::number(now - 3 * day));
    GPreferences::FlushPrefs();
    ResultList::RemoveOld();
    EXPECT_TRUE(QFile::exists(GetSandbox().GetPath("Temp/anna/Press/old.pdf"_q))) << "There is no setting.";
    GPreferences::Set(GPreferences::cUserFileModule, "General", "RemoveResultsAfterDays", 2);
    PlugInPreferences::Initialize();
    PlugInPreferences::Release();
    for (const auto& each : cases)
        EXPECT_EQ(QFile::exists(GetSandbox().GetPath(QString::fromLatin1(each.path))), each.stays)
            << each.path;
    EXPECT_FALSE(QFile::exists(GetSandbox().GetPath("Temp/anna/Pack"_q)));
    GPrefGroup noted;
    module.GetGroupPreferences("Results", noted);
    EXPECT_EQ(noted.GetCount(), IsFileMissing(unseen) ? 3 : 4) << "new, later, in use, and out of sight";
}
