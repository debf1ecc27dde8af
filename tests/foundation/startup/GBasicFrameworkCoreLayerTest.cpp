#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Sandbox.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QLocale>

namespace
{
class CoreLayer : public testing::Test
{
protected:
    void TearDown() override
    {
        while (GBasicFrameworkCoreLayer::IsInitialized())
            GBasicFrameworkCoreLayer::Release();
        GTrace::SetLogger(nullptr);
    }

    static void SetSetting(const char* key, const char* value)
    {
        if (GPreferences::GetPrefModule(0) == nullptr)
            GPreferences::SetPrefModule(0, std::make_unique<GPrefMemoryModule>());
        GPreferences::Set(0, "General", key, value);
    }

    static std::string GetText(uint32_t code) { return GStringPool::GetString(code).toStdString(); }

    Sandbox mSandbox;
};
}  // namespace

TEST_F(CoreLayer, TheFirstInitialisationBringsUpAndTheLastReleaseTakesDown)
{
    GBasicFrameworkCoreLayer::Initialize();
    GBasicFrameworkCoreLayer::Initialize();
    EXPECT_EQ(GetText(30050000), "Could not create the semaphore (common resources lock)");
    EXPECT_EQ(GetText(30050003), "Named semaphore already exist but could not unlink");
    SetSetting("Language", "frFR");
    GBasicFrameworkCoreLayer::Release();
    EXPECT_NE(GetText(30050000), "");
    EXPECT_EQ(GPreferences::Get("General", "Language"), QStringLiteral("frFR"));
    GBasicFrameworkCoreLayer::Release();
    EXPECT_EQ(GetText(30050000), "");
    EXPECT_FALSE(GPreferences::Has("General", "Language"));
    EXPECT_EQ(GTrace::GetLogger(), nullptr);
}

// A release too many counts for nothing, and settings that can't be written keep nothing else from going
// down.
TEST_F(CoreLayer, WhatGoesWrongInAReleaseIsLogged)
{
    const auto log = std::make_shared<LogRecorder>();
    GTrace::SetLogger(log);
    GBasicFrameworkCoreLayer::Release();
    EXPECT_EQ(log->TakeErrors().size(), 1);
    GBasicFrameworkCoreLayer::Initialize();
    QFile blocker(mSandbox.GetPath(QStringLiteral("file in the way")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    GPreferences::SetPrefModule(
        0, std::make_unique<GPrefFileModule>(GPathName(blocker.fileName() + QStringLiteral("/a.pref")),
                                             GEncoding::GetUTF16()));
    SetSetting("Language", "frFR");
    log->TakeErrors();
    GBasicFrameworkCoreLayer::Release();
    EXPECT_TRUE(log->TakeErrors().join(QLatin1Char('\n')).contains(QLatin1String("Settings are lost")));
    EXPECT_EQ(GPreferences::GetPrefModule(0), nullptr);
    EXPECT_FALSE(GBasicFrameworkCoreLayer::IsInitialized());
    EXPECT_EQ(GTrace::GetLogger(), log) << "whoever installed a logger keeps it";
}

TEST_F(CoreLayer, TheLanguageIsTheSettingElseTheLocale)
{
    const struct
    {
        const char* locale;
        const char* language;
    } cases[] = {{"de_DE", "deDE"}, {"de_AT", "deDE"}, {"fr_CA", "frFR"}, {"en_GB", "enUS"},
                 {"ja_JP", "jaJP"}, {"zh_TW", "zhTW"}, {"zh_SG", "zhCN"}, {"C", "enUS"}};
    for (const auto& testCase : cases) {
        EXPECT_EQ(GBasicFrameworkCoreLayer::GetLanguageOf(QLocale(QString::fromLatin1(testCase.locale))),
                  QString::fromLatin1(testCase.language));
    }
    GBasicFrameworkCoreLayer::Initialize();
    EXPECT_EQ(GBasicFrameworkCoreLayer::GetLanguage(),
              GBasicFrameworkCoreLayer::GetLanguageOf(QLocale::system()));
    GStringPool::GetTable(QStringLiteral("frFR"));
    SetSetting("Language", "frFR");
    GBasicFrameworkCoreLayer::ApplySettings();
    GString language;
    GStringPool::GetLanguage(language);
    EXPECT_EQ(language, QStringLiteral("frFR"));
}

TEST_F(CoreLayer, TheLogGoesToAFileWhenTheSettingSaysSo)
{
    const GPathName path = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
                               .GetChild(QStringLiteral("Morvane.log"));
    GBasicFrameworkCoreLayer::Initialize();
    GBasicFrameworkCoreLayer::ApplySettings();
    EXPECT_FALSE(QFile::exists(path.GetNativePath()));
    SetSetting("LogToFile", "true");
    GBasicFrameworkCoreLayer::ApplySettings();
    GTrace::Error(QStringLiteral("Test"), QStringLiteral("to the file"));
    GBasicFrameworkCoreLayer::Release();
    EXPECT_EQ(GTrace::GetLogger(), nullptr);
    QFile file(path.GetNativePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("ERROR Test: to the file"));
}
