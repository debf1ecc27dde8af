#include "PrefDocument.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPreferences.h"
#include "tests/support/Test.h"

namespace
{
class GPreferencesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        GPreferences::Initialize();
        GPreferences::SetDefaultModules("Host"_q, 15);
    }
    void TearDown() override { GPreferences::Finalize(); }

    QString GetUserFile(const char* name) const
    {
        return mSandbox.GetPath("AppData/Morvane Prefs Folder/"_q + QString::fromLatin1(name));
    }

    // The entries of a module of the store.
    static std::string Show(int32_t id) { return GetText(*GPreferences::GetPrefModule(id)); }

    static std::string Get(const char* key) { return GPreferences::Get("G", key).toStdString(); }

    Sandbox mSandbox;
};

// A module whose storage fails.
class FailingModule : public GPrefMemoryModule
{
public:
    void WriteDict() override { throw GSimpleException(GErrorCode::cFile, "no disk"_q); }
};
}  // namespace

TEST_F(GPreferencesTest, FirstModuleByDescendingNumberAnswersAndOthersUpdateIt)
{
    for (const int32_t id : {-5, -4, -3, 0, 7}) {
        if (GPreferences::GetPrefModule(id) == nullptr)
            GPreferences::SetPrefModule(id, std::make_unique<GPrefMemoryModule>());
        GPreferences::Set(id, "G", "K", id);
        EXPECT_EQ(GPreferences::GetInt32("G", "K"), id);
    }
    GPreferences::Set(-2, "G", "only shared", "one");
    EXPECT_EQ(Get("only shared"), "") << "The group is not shared.";
    EXPECT_TRUE(GPreferences::Has("G", "only shared"));
    EXPECT_EQ(GPreferences::Get(-4, "G", "K"), "-4"_q);
    EXPECT_FALSE(GPreferences::Has(99, "G", "K"));

    GPrefMemoryModule callers;
    callers.Set("G", "K", "two"_q);
    GPreferences::SetPrefModule(7, callers);
    EXPECT_EQ(Get("K"), "two");
    GPreferences::RemovePrefModule(7);
    EXPECT_EQ(GetText(callers), "G.K=two");
    EXPECT_EQ(Get("K"), "0");

    GPreferences::Set(-3, "G", "kept", "one");
    GPreferences::UpdatePreferencesWith({{-3, &callers}, {99, &callers}});
    EXPECT_EQ(Show(-3), "G.K=two G.kept=one");
}

TEST_F(GPreferencesTest, SharedGroupLivesInTheSharedFileAlone)
{
    GPreferences::Set(-3, "G", "K", "one");
    GPreferences::SetPrefSharing(-3, "G", true);
    EXPECT_EQ(Get("K"), "") << "Not copied yet: only the shared file answers.";
    GPreferences::Set(-3, "G", "K", "two");
    EXPECT_EQ(Get("K"), "two");
    EXPECT_EQ(GPreferences::GetNonSharedPref("G", "K"), "one"_q);
    GPreferences::FlushPrefs();
    EXPECT_EQ(ReadText(GetUserFile("Morvane.uprefs")), "G.K=two");
    EXPECT_EQ(ReadText(GetUserFile("Host.uprefs")), "G.K=one PrefSharing.G=true");

    GPreferences::Remove(-3, "G", "K");
    GPreferences::CopySharedPreferences();
    EXPECT_EQ(Get("K"), "") << "Whoever set it can remove it.";
    GPreferences::Set(-3, "G", "K", "again");
    GPreferences::Remove(-3, "G");
    EXPECT_EQ(Get("K"), "");

    GPreferences::Set(-3, "PrefSharing", "PrefSharing", true);
    EXPECT_FALSE(GPreferences::IsPrefSharing("PrefSharing"));
    GPreferences::SetPrefSharing(-3, "G", false);
    GPreferences::SetPrefSharing(-2, "G", true);
    EXPECT_FALSE(GPreferences::IsPrefSharing("G")) << "A mark in the shared file does not count.";
    GPreferences::SetPrefSharing(-3, "G", true);
    GPreferences::RemovePrefModule(-2);
    GPreferences::Set(-3, "G", "K", "three");
    EXPECT_EQ(Get("K"), "three") << "Without a shared module it stays.";
}

TEST_F(GPreferencesTest, CopiesAndDefaultsOnlyFillTheGapsOfSharedGroups)
{
    for (const int32_t id : {-5, -4, -3})
        GPreferences::Set(id, "G", "K", id);
    GPreferences::Set(-4, "G", "system", "one");
    GPreferences::Set(-2, "G", "kept", "one");
    GPreferences::Set(-4, "G", "kept", "two");
    GPreferences::Set(-4, "other", "K", "two");
    GPreferences::SetPrefSharing(-5, "G", true);
    GPreferences::SetPrefSharing(-5, "other", false);
    GPreferences::CopySharedPreferences();
    EXPECT_EQ(Show(-2), "G.K=-3 G.kept=one G.system=one");
    for (const char* key : {"kept", "new"})
        GPreferences::SetDefault(-3, "G", key, "default");
    EXPECT_EQ(Show(-2), "G.K=-3 G.kept=one G.new=default G.system=one");
    EXPECT_EQ(Show(-3), "G.K=-3");
}

TEST_F(GPreferencesTest, TextsReadAsTheTypeThatIsAskedFor)
{
    const auto read = [](const char* text) {
        GPreferences::Set(-3, "G", "K", text);
        bool isOn = true;
        int32_t number = 99;
        double real = 99;
        EXPECT_TRUE(GPreferences::Get("G", "K", isOn) && GPreferences::Get("G", "K", number) &&
                    GPreferences::Get("G", "K", real));
        return "%1 %2 %3"_q.arg(isOn).arg(number).arg(real).toStdString();
    };
    EXPECT_EQ(read("true"), "1 0 0");
    EXPECT_EQ(read("TRUE"), "0 0 0");
    EXPECT_EQ(read("65536"), "0 65536 65536");
    EXPECT_EQ(read("1.5"), "0 0 1.5");
    GString text = "before"_q;
    EXPECT_FALSE(GPreferences::Get("G", "none", text));
    EXPECT_TRUE(text.isEmpty());
    GPreferences::Set(-3, "G", "K", 0.1);
    EXPECT_EQ(GPreferences::GetReal("G", "K"), 0.1);
    GDateTime time = GDateTime::FromMilliseconds(1);
    EXPECT_TRUE(GPreferences::Get("G", "K", time));
    EXPECT_FALSE(time.IsValid()) << "It holds a number.";
    GPreferences::Set(-3, "G", "K", GDateTime::FromMilliseconds(1234567890123));
    EXPECT_EQ(GPreferences::GetDateTime("G", "K"), GDateTime::FromMilliseconds(1234567890123));
}

TEST_F(GPreferencesTest, StoredPathsFollowTheirFolder)
{
    const GPathName path(GetUserFile("a/b.prefs"));
    GPreferences::Set(-3, "G", "inside", path);
    GPreferences::Set(-3, "G", "folder", GPathName(GetUserFile("")));
    const GPathName global(GetUserFile("../../CommonAppData/Morvane Prefs Folder/x"));
    GPreferences::Set(-3, "G", "global", global);
    const GPathName beside(GetUserFile("../Morvane Prefs Folder2/c"));
    GPreferences::Set(-3, "G", "beside", beside);
    GPreferences::Set(-3, "G", "text", path.GetNativePath());
    GPreferences::Set(-3, "G", "hostile", "%MorvaneUserPreferences%/../../etc/passwd");
    EXPECT_EQ(Get("inside"), "%MorvaneUserPreferences%/a/b.prefs");
    EXPECT_EQ(Get("global"), "%MorvaneGlobalPreferences%/x");
    EXPECT_EQ(GPreferences::GetPathName("G", "text"), path);
    EXPECT_TRUE(GPreferences::GetPathName("G", "hostile").IsEmpty());
    const Sandbox moved;
    const GPathName movedFolder(moved.GetPath("AppData/Morvane Prefs Folder"_q));
    EXPECT_EQ(GPreferences::GetPathName("G", "inside"), movedFolder.GetChild("a/b.prefs"_q));
    EXPECT_EQ(GPreferences::GetPathName("G", "folder"), movedFolder);
    EXPECT_EQ(GPreferences::GetPathName("G", "beside"), beside);
}

TEST_F(GPreferencesTest, TemporaryUseIsTakenBackUnlessOneOfTheNestedWasKept)
{
    const std::string changed = "G.K=two G.stays=two new.K=two";
    for (const auto& [inner, outer] : {std::pair{false, false}, {false, true}, {true, false}, {true, true}}) {
        SCOPED_TRACE(testing::Message() << inner << outer);
        GPreferences::Set(-3, "G", "K", "one");
        GPreferences::Set(-3, "G", "stays", "one");
        GPreferences::FlushPrefs();
        GPreferences::StartUsingTempModules();
        GPreferences::StartUsingTempModules();
        GPreferences::Set(-3, "G", "K", "two");
        GPreferences::Set(-3, "new", "K", "two");
        GPreferences::SetIgnoreTemp(-3, "G", "stays", "two"_q);
        GPreferences::EndUsingTempModules(inner);
        EXPECT_EQ(Show(-3), changed);
        GPreferences::EndUsingTempModules(outer);
        EXPECT_EQ(Show(-3), inner || outer ? changed : "G.K=one G.stays=two");
        EXPECT_TRUE(GPreferences::IsDirty());
        GPreferences::Remove(-3, "new");
    }
    GPreferences::FlushPrefs();
    GPreferences::StartUsingTempModules();
    GPreferences::Set(-3, "G", "K", "three");
    GPreferences::FlushPrefs();
    GPreferences::EndUsingTempModules(false);
    GPreferences::FlushPrefs();
    EXPECT_EQ(ReadText(GetUserFile("Host.uprefs")), "G.K=two G.stays=two")
        << "What was flushed meanwhile is taken back in the file too.";
    GPreferences::Set(-3, "G", "K", "four");
    GPreferences::StartUsingTempModules();
    GPreferences::FlushPrefs();
    GPreferences::EndUsingTempModules(false);
    EXPECT_FALSE(GPreferences::IsDirty()) << "The file holds what there was before the use.";
}

TEST_F(GPreferencesTest, FinalizeWritesWhatItCanAndEmptiesTheStore)
{
    GPreferences::SetPrefModule(3, std::make_unique<FailingModule>());
    GPreferences::Set(-3, "G", "K", "one");
    EXPECT_THROW(GPreferences::Finalize(), GSimpleException);
    EXPECT_EQ(GPreferences::GetPrefModule(-3), nullptr);
    EXPECT_TRUE(QFile::exists(GetUserFile("Host.uprefs")));
}
