#include "foundation/core/GMessageLoop.h"
#include "foundation/core/GSignal.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <QEventLoop>
#include <QLocale>
#include <QTimer>

#include <map>

TEST(CoreLayer, TheFirstInitialisationBringsUpAndTheLastReleaseTakesDown)
{
    const Sandbox sandbox;
    const QString logFile = sandbox.GetPath("AppData/Morvane Prefs Folder/Morvane.log"_q);
    GBasicFrameworkCoreLayer::Initialize();
    GBasicFrameworkCoreLayer::Initialize();
    EXPECT_EQ(GBasicFrameworkCoreLayer::GetLanguage(),
              GBasicFrameworkCoreLayer::GetLanguageOf(QLocale::system()));
    GBasicFrameworkCoreLayer::ApplySettings();
    EXPECT_EQ(ReadFile(logFile), "none");
    GPreferences::SetPrefModule(0, std::make_unique<GPrefMemoryModule>());
    GPreferences::Set(0, "General", "Language", "frFR");
    GPreferences::Set(0, "General", "LogToFile", "true");
    GStringPool::GetTable("frFR"_q);
    GBasicFrameworkCoreLayer::ApplySettings();
    GTrace::Error("Test"_q, "to the file"_q);
    GBasicFrameworkCoreLayer::Release();
    GString language;
    GStringPool::GetLanguage(language);
    EXPECT_EQ(language, "frFR"_q);
    EXPECT_EQ(GStringPool::GetString(30050003).toStdString(),
              "Named semaphore already exist but could not unlink");
    GBasicFrameworkCoreLayer::Release();
    EXPECT_EQ(GStringPool::GetString(30050003), GString());
    EXPECT_EQ(GPreferences::GetPrefModule(0), nullptr);
    EXPECT_EQ(GTrace::GetLogger(), nullptr);
    EXPECT_TRUE(ReadFile(logFile).contains("ERROR Test: to the file"));
}

TEST(CoreLayer, TicksBetweenInitialisationAndRelease)
{
    struct Clock : GReceiver<GTick>
    {
        void Receive(int32_t, const GTick&) override
        {
            ++ticks;
            loop.quit();
        }
        QEventLoop loop;
        int ticks = 0;
    };
    const Sandbox sandbox;
    Clock clock;
    GMessageLoop::GetTickSignal().Attach(clock);
    GBasicFrameworkCoreLayer::Initialize();
    clock.loop.exec();
    GBasicFrameworkCoreLayer::Release();
    QTimer::singleShot(2 * GMessageLoop::cTickInterval, &clock.loop, &QEventLoop::quit);
    clock.loop.exec();
    EXPECT_EQ(clock.ticks, 1);
}

// A release too many counts for nothing, and settings that can't be written keep nothing else from going
// down.
TEST(CoreLayer, WhatGoesWrongInAReleaseIsLogged)
{
    const Sandbox sandbox;
    const auto log = std::make_shared<LogRecorder>();
    GTrace::SetLogger(log);
    GBasicFrameworkCoreLayer::Release();
    EXPECT_EQ(log->TakeErrors().size(), 1);
    GBasicFrameworkCoreLayer::Initialize();
    ASSERT_TRUE(WriteFile(sandbox.GetPath("in the way"_q), ""));
    const GPathName path(sandbox.GetPath("in the way/a.pref"_q));
    GPreferences::SetPrefModule(0, std::make_unique<GPrefFileModule>(path, GEncoding::GetUTF16()));
    GPreferences::Set(0, "General", "Language", "frFR");
    log->TakeErrors();
    GBasicFrameworkCoreLayer::Release();
    EXPECT_TRUE(log->TakeErrors().join(QLatin1Char('\n')).contains(QLatin1String("Settings are lost")));
    EXPECT_EQ(GPreferences::GetPrefModule(0), nullptr);
    EXPECT_FALSE(GBasicFrameworkCoreLayer::IsInitialized());
    EXPECT_EQ(GTrace::SetLogger(nullptr), log) << "whoever installed a logger keeps it";
}

TEST(CoreLayer, TheLanguageFollowsTheLocale)
{
    const std::map<const char*, const char*> cases = {{"de_AT", "deDE"}, {"fr_CA", "frFR"}, {"ja_JP", "jaJP"},
                                                      {"zh_TW", "zhTW"}, {"zh_SG", "zhCN"}, {"C", "enUS"},
                                                      {"pt_PT", "ptPT"}, {"pt_AO", "ptBR"}};
    GStringPool::Initialize();
    GStringPool::GetTable("ptPT"_q);
    for (const auto& each : cases) {
        EXPECT_EQ(GBasicFrameworkCoreLayer::GetLanguageOf(QLocale(QString::fromLatin1(each.first))),
                  QString::fromLatin1(each.second));
    }
    GStringPool::Finalize();
}
