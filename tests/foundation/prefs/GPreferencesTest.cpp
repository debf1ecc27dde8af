#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPreferences.h"
#include "tests/support/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <map>
#include <tuple>

namespace
{
const GString cOne = QStringLiteral("one");
const GString cTwo = QStringLiteral("two");

class GPreferencesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        GPreferences::Initialize();
        GPreferences::SetDefaultModules(QStringLiteral("Host"), 15);
    }
    void TearDown() override { GPreferences::Finalize(); }

    QString GetUserFile(const char* name) const
    {
        return mSandbox.GetPath(QStringLiteral("AppData/Morvane Prefs Folder/") + QString::fromLatin1(name));
    }

    Sandbox mSandbox;
};

// A module whose storage fails.
class FailingModule : public GPrefMemoryModule
{
public:
    void WriteDict() override { throw GSimpleException(GErrorCode::cFile, QStringLiteral("no disk")); }
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
    GPreferences::Set(-2, "G", "only shared", cOne);
    EXPECT_TRUE(GPreferences::Get("G", "only shared").isEmpty()) << "The group is not shared.";
    EXPECT_TRUE(GPreferences::Has("G", "only shared"));
    EXPECT_EQ(GPreferences::Get(-4, "G", "K"), QStringLiteral("-4"));
    EXPECT_FALSE(GPreferences::Has(99, "G", "K"));

    GPrefMemoryModule callers;
    callers.Set("G", "K", cTwo);
    GPreferences::SetPrefModule(7, callers);
    EXPECT_EQ(GPreferences::Get("G", "K"), cTwo);
    GPreferences::RemovePrefModule(7);
    EXPECT_EQ(callers.Get("G", "K"), cTwo);
    EXPECT_EQ(GPreferences::GetInt32("G", "K"), 0);

    GPreferences::Set(-3, "G", "kept", cOne);
    GPreferences::UpdatePreferencesWith({{-3, &callers}, {99, &callers}});
    EXPECT_EQ(GPreferences::Get(-3, "G", "K"), cTwo);
    EXPECT_EQ(GPreferences::Get(-3, "G", "kept"), cOne);
}

TEST_F(GPreferencesTest, SharedGroupLivesInTheSharedFileAlone)
{
    GPreferences::Set(-3, "G", "K", cOne);
    GPreferences::SetPrefSharing(-3, "G", true);
    EXPECT_TRUE(GPreferences::Get("G", "K").isEmpty()) << "Not copied yet: only the shared file answers.";
    GPreferences::Set(-3, "G", "K", cTwo);
    EXPECT_EQ(GPreferences::Get(-3, "G", "K"), cOne);
    EXPECT_EQ(GPreferences::Get(-2, "G", "K"), cTwo);
    EXPECT_EQ(GPreferences::Get("G", "K"), cTwo);
    EXPECT_EQ(GPreferences::GetNonSharedPref("G", "K"), cOne);
    GPreferences::FlushPrefs();
    EXPECT_EQ(GPrefFileModule(GPathName(GetUserFile("Morvane.uprefs")), nullptr).Get("G", "K"), cTwo);
    EXPECT_EQ(GPrefFileModule(GPathName(GetUserFile("Host.uprefs")), nullptr).Get("G", "K"), cOne);

    GPreferences::Set(-3, "PrefSharing", "PrefSharing", true);
    EXPECT_FALSE(GPreferences::IsPrefSharing("PrefSharing"));
    GPreferences::SetPrefSharing(-3, "G", false);
    GPreferences::SetPrefSharing(-2, "G", true);
    EXPECT_FALSE(GPreferences::IsPrefSharing("G")) << "A mark in the shared file does not count.";
    GPreferences::SetPrefSharing(-3, "G", true);
    GPreferences::RemovePrefModule(-2);
    GPreferences::Set(-3, "G", "K", QStringLiteral("three"));
    EXPECT_EQ(GPreferences::Get("G", "K"), QStringLiteral("three")) << "Without a shared module it stays.";
}

TEST_F(GPreferencesTest, CopiesAndDefaultsOnlyFillTheGapsOfSharedGroups)
{
    for (const int32_t id : {-5, -4, -3})
        GPreferences::Set(id, "G", "K", id);
    GPreferences::Set(-4, "G", "system", cOne);
    GPreferences::Set(-2, "G", "kept", cOne);
    GPreferences::Set(-4, "G", "kept", cTwo);
    GPreferences::Set(-4, "other", "K", cTwo);
    GPreferences::SetPrefSharing(-5, "G", true);
    GPreferences::SetPrefSharing(-5, "other", false);
    GPreferences::CopySharedPreferences();
    EXPECT_EQ(GPreferences::GetInt32(-2, "G", "K"), -3);
    EXPECT_EQ(GPreferences::Get(-2, "G", "system"), cOne);
    EXPECT_EQ(GPreferences::Get(-2, "G", "kept"), cOne);
    EXPECT_FALSE(GPreferences::Has(-2, "other", "K"));
    for (const char* key : {"kept", "new"})
        GPreferences::SetDefault(-3, "G", key, "default");
    EXPECT_EQ(GPreferences::Get(-2, "G", "kept"), cOne);
    EXPECT_EQ(GPreferences::Get(-2, "G", "new"), QStringLiteral("default"));
    EXPECT_FALSE(GPreferences::Has(-3, "G", "new"));
}

TEST_F(GPreferencesTest, TextsReadAsTheTypeThatIsAskedFor)
{
    const std::map<const char*, std::tuple<bool, int32_t, double>> cases = {
        {"true", {true, 0, 0}},
        {"TRUE", {false, 0, 0}},
        {"1", {false, 1, 1}},
        {"2147483648", {false, 0, 2147483648.0}}};
    for (const auto& test : cases) {
        GPreferences::Set(-3, "G", "K", test.first);
        std::tuple<bool, int32_t, double> read = {true, 99, 99};
        EXPECT_TRUE(GPreferences::Get("G", "K", std::get<0>(read)) &&
                    GPreferences::Get("G", "K", std::get<1>(read)) &&
                    GPreferences::Get("G", "K", std::get<2>(read)));
        EXPECT_EQ(read, test.second) << test.first;
    }
    GString text = cOne;
    EXPECT_FALSE(GPreferences::Get("G", "none", text));
    EXPECT_TRUE(text.isEmpty());
    GPreferences::Set(-3, "G", "K", 0.1);
    EXPECT_EQ(GPreferences::GetReal("G", "K"), 0.1);
    GDateTime time = GDateTime::GetNow();
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
    GPreferences::Set(-3, "G", "global",
                      GPathName(GetUserFile("../../CommonAppData/Morvane Prefs Folder/x")));
    GPreferences::Set(-3, "G", "beside", GPathName(GetUserFile("../Morvane Prefs Folder2/c")));
    GPreferences::Set(-3, "G", "text", path.GetNativePath());
    GPreferences::Set(-3, "G", "hostile", "%MorvaneUserPreferences%/../../etc/passwd");
    EXPECT_EQ(GPreferences::Get("G", "inside"), QStringLiteral("%MorvaneUserPreferences%/a/b.prefs"));
    EXPECT_EQ(GPreferences::Get("G", "global"), QStringLiteral("%MorvaneGlobalPreferences%/x"));
    EXPECT_EQ(GPreferences::GetPathName("G", "inside"), path);
    EXPECT_EQ(GPreferences::GetPathName("G", "text"), path);
    EXPECT_TRUE(GPreferences::GetPathName("G", "hostile").IsEmpty());
    const GPathName beside = GPreferences::GetPathName("G", "beside");
    const Sandbox moved;
    const QString movedFolder = moved.GetPath(QStringLiteral("AppData/Morvane Prefs Folder"));
    EXPECT_EQ(GPreferences::GetPathName("G", "inside"),
              GPathName(movedFolder + QStringLiteral("/a/b.prefs")));
    EXPECT_EQ(GPreferences::GetPathName("G", "folder"), GPathName(movedFolder));
    EXPECT_EQ(GPreferences::GetPathName("G", "beside"), beside);
}

TEST_F(GPreferencesTest, ScrambledValuesAreClearOnlyThroughTheStore)
{
    GPreferences::SetScramble(-3, "G", "K", QStringLiteral("secret \u00E4"));
    GPreferences::SetScramble(-3, "G", "N", -42);
    EXPECT_FALSE(GPreferences::Get("G", "K").contains(QStringLiteral("secret")));
    EXPECT_EQ(GPreferences::GetUnscramble("G", "K"), QStringLiteral("secret \u00E4"));
    EXPECT_EQ(GPreferences::GetUnscrambleInt32(-3, "G", "N"), -42);
}

TEST_F(GPreferencesTest, TemporaryUseIsTakenBackUnlessOneOfTheNestedWasKept)
{
    for (const bool inner : {false, true}) {
        for (const bool outer : {false, true}) {
            SCOPED_TRACE(testing::Message() << inner << outer);
            GPreferences::Set(-3, "G", "K", cOne);
            GPreferences::Set(-3, "G", "stays", cOne);
            GPreferences::FlushPrefs();
            GPreferences::StartUsingTempModules();
            GPreferences::StartUsingTempModules();
            GPreferences::Set(-3, "G", "K", cTwo);
            GPreferences::Set(-3, "new", "K", cTwo);
            GPreferences::SetIgnoreTemp(-3, "G", "stays", cTwo);
            GPreferences::EndUsingTempModules(inner);
            EXPECT_EQ(GPreferences::Get("G", "K"), cTwo);
            GPreferences::EndUsingTempModules(outer);
            EXPECT_EQ(GPreferences::Get("G", "K"), inner || outer ? cTwo : cOne);
            EXPECT_EQ(GPreferences::Has("new", "K"), inner || outer);
            EXPECT_EQ(GPreferences::Get("G", "stays"), cTwo);
            EXPECT_TRUE(GPreferences::IsDirty());
            GPreferences::Remove(-3, "new");
        }
    }
    GPreferences::FlushPrefs();
    GPreferences::StartUsingTempModules();
    GPreferences::Set(-3, "G", "K", QStringLiteral("three"));
    GPreferences::FlushPrefs();
    GPreferences::EndUsingTempModules(false);
    GPreferences::FlushPrefs();
    EXPECT_EQ(GPrefFileModule(GPathName(GetUserFile("Host.uprefs")), nullptr).Get("G", "K"), cTwo)
        << "What was flushed meanwhile is taken back in the file too.";
}

TEST_F(GPreferencesTest, FinalizeWritesWhatItCanAndEmptiesTheStore)
{
    GPreferences::SetPrefModule(3, std::make_unique<FailingModule>());
    GPreferences::Set(-3, "G", "K", cOne);
    EXPECT_THROW(GPreferences::Finalize(), GSimpleException);
    EXPECT_EQ(GPreferences::GetPrefModule(-3), nullptr);
    EXPECT_TRUE(QFile::exists(GetUserFile("Host.uprefs")));
}
