#include "FakeStateList.h"
#include "ModuleFixture.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/WindowDriver.h"

#include <QApplication>

#include <string>

TEST_F(Module, RegistersItsMenusAnswersStatesIsReleasedAndComesBack)
{
    ASSERT_EQ(plugIn->GetInterfaceVersion(), IHostServices::cVersion);
    EXPECT_EQ(plugIn->GetStartupShutdownService(), nullptr);
    ASSERT_EQ(GiveServices(&host), QString());
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    plugIn->GetStartupShutdownService()->Startup();
    EXPECT_EQ(host.actions.size(), 2U);
    EXPECT_EQ(host.menuItems.size(), 2U);
    ResourceFileInfo info;
    ASSERT_TRUE(plugIn->GetResourceAccess().GetResourceFile(info));
    EXPECT_TRUE(QFile::exists(info.file.GetPathName().GetNativePath() + "/Strings/CSP_deDE.LNG"_q));

    FakeStateList list({cDocument});
    component->UpdateActionStates(nullptr, list);
    host.documents.push_back({});
    component->UpdateActionStates(nullptr, list);
    EXPECT_EQ(list.set.filter(" o"_q), "1674244 off|1674244 on"_list);

    plugIn->GetStartupShutdownService()->Shutdown();
    EXPECT_TRUE(plugIn->Unload());
    EXPECT_EQ(plugIn->GetStartupShutdownService(), nullptr);
    library.unload();
    Load();
    ASSERT_EQ(GiveServices(&host), QString());
    EXPECT_NE(Create(), nullptr) << error.toStdString();
}

TEST_F(Module, SaysWhatIsWrongWithTheServices)
{
    EXPECT_FALSE(GiveServices(nullptr).isEmpty());
    LoadDirectly();
    EXPECT_FALSE(GiveServices(nullptr).isEmpty());
    host.version = IHostServices::cVersion + 1;
    EXPECT_TRUE(GiveServices(&host).contains(QString::number(host.version)));
    EXPECT_EQ(Create(), nullptr);
    EXPECT_FALSE(error.isEmpty());

    host.version = IHostServices::cVersion;
    ASSERT_EQ(GiveServices(&host), QString());
    EXPECT_FALSE(GiveServices(&host).isEmpty());
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    EXPECT_EQ(Create(), nullptr);
    EXPECT_FALSE(error.isEmpty());
    component->DoAction(nullptr, 1674240, nullptr);  // the first one still answers
    EXPECT_EQ(host.alerts.size(), 1);
}

// Twice each: what one run leaves behind meets the next.
TEST_F(Module, MakesTheApplicationThatIsMissingAndNoOther)
{
    int count = 1;
    char name[] = "host";
    char* list[] = {name, nullptr};
    for (const std::string application : {"none", "windows", "console", "none", "windows"}) {
        std::unique_ptr<QCoreApplication> own;
        if (application == "windows")
            own = std::make_unique<QApplication>(count, list);
        else if (application == "console")
            own = std::make_unique<QCoreApplication>(count, list);
        const bool isUsable = application != "console";
        ASSERT_EQ(GiveServices(&host), QString());
        EXPECT_EQ(Create() != nullptr, isUsable) << application << error.toStdString();
        EXPECT_EQ(error.isEmpty(), isUsable) << application;
        EXPECT_EQ(QCoreApplication::instance() != nullptr, own || isUsable) << application;
        EXPECT_TRUE(plugIn->Unload());
        EXPECT_EQ(QCoreApplication::instance(), own.get()) << application;
    }
}

// A window system that is not there ends a process that starts Qt's windows.
TEST_F(Module, RefusesAProcessThatCanShowNoWindows)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"nonsense", ":4711", false}, {"xcb", ":4711", false},          {"xcb", "", false},
        {"wayland", "", false},       {"nonsense;offscreen", "", true}, {"offscreen:x", ":4711", true}};
    for (const auto& [platformName, displayName, isUsable] : cases) {
        SCOPED_TRACE(platformName + std::string(" on ") + displayName);
        const Variable platform("QT_QPA_PLATFORM", platformName);
        const Variable display("DISPLAY", displayName);
        const Variable wayland("WAYLAND_DISPLAY", "wayland-4711");
        ASSERT_EQ(GiveServices(&host), QString());
        EXPECT_EQ(Create() != nullptr, isUsable) << error.toStdString();
        EXPECT_EQ(error.isEmpty(), isUsable);
        EXPECT_TRUE(plugIn->Unload());
    }
}

// Qt's "offscreen" under another name, and linked with a library that is not there: Qt would end the process.
TEST_F(Module, RefusesAPlatformThatCannotBeLoaded)
{
    const QString folder = sandbox.GetPath("Platforms"_q);
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const QString& path : QCoreApplication::libraryPaths())
        for (const QFileInfo& file : QDir(path + "/platforms"_q).entryInfoList({"*qoffscreen*"_q}))
            WriteFile(
                folder + QLatin1Char('/') + file.fileName(),
                ReadFile(file.filePath()).replace("offscreen", "onscreens").replace("Qt5Core.", "Qt5C0re."));
    ASSERT_FALSE(QDir(folder).isEmpty());
    const Variable platform("QT_QPA_PLATFORM", "onscreens");
    const Variable place("QT_QPA_PLATFORM_PLUGIN_PATH", QFile::encodeName(folder).constData());
    ASSERT_EQ(GiveServices(&host), QString());
    EXPECT_EQ(Create(), nullptr);
    EXPECT_TRUE(error.contains("\"onscreens\""_q)) << error.toStdString();
}

// The host's main loop may unload a plug-in whose dialog is open, or whose command runs.
TEST_F(Module, StaysLoadedWhileAnActionRuns)
{
    MakeHopbox("Press"_q);
    MakeDocumentAndBook();
    ASSERT_EQ(GiveServices(&host), QString());
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    int tries = 0;
    const auto tryToEnd = [&] {
        ++tries;
        EXPECT_FALSE(plugIn->ReleaseActionComponent());
        EXPECT_FALSE(plugIn->Unload());
        component->DoAction(nullptr, cBook, nullptr);
    };
    host.onRun = tryToEnd;
    {
        WindowDriver driver({[&](QWidget&) {
                                 tryToEnd();
                                 WindowDriver::Click(Qt::Key_Return);
                             },
                             [&](QWidget&) {  // nobody takes the PDF
                                 tryToEnd();
                                 WindowDriver::Click(Qt::Key_Escape);
                             }});
        component->DoAction(nullptr, cDocument, nullptr);
    }
    EXPECT_EQ(tries, 3);
    EXPECT_TRUE(plugIn->ReleaseActionComponent());
    EXPECT_TRUE(plugIn->Unload());
}

// Two plug-ins of one kind in a process, such as two versions: each has its host, and the one that goes first
// leaves the other what both stand on.
TEST_F(Module, LivesBesideAnotherModule)
{
    MakeHopbox("Press"_q);
    MakeDocumentAndBook();
    const QString copy = sandbox.GetPath("Other/"_q + QFileInfo(QStringLiteral(HOPBOX_MODULE)).fileName());
    ASSERT_TRUE(QDir().mkpath(QFileInfo(copy).path()) && QFile::copy(QStringLiteral(HOPBOX_MODULE), copy));
    QLibrary otherLibrary(copy);
    ModulePlugIn other(reinterpret_cast<hopbox_entry_function>(otherLibrary.resolve(HOPBOX_ENTRY_NAME)));
    ASSERT_TRUE(other.IsServed()) << otherLibrary.errorString().toStdString();
    FakeHost otherHost;
    otherHost.documents = host.documents;
    const ExportChoices choices{PMString("Press"_q), PMString(), false};
    for (const bool isFirstGone : {false, true}) {
        PMString reason;
        ASSERT_EQ(GiveServices(&host), QString());
        ASSERT_TRUE(other.Load(&otherHost, reason)) << reason.GetString().toStdString();
        IActionComponent* first = Create();
        IActionComponent* second = other.CreateActionComponent(reason);
        ASSERT_NE(first, nullptr) << error.toStdString();
        ASSERT_NE(second, nullptr) << reason.GetString().toStdString();
        {
            const PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
            for (IActionComponent* component : {first, second})
                EXPECT_EQ(component->Export(cDocument, choices, reason), ExportResult::Done)
                    << reason.GetString().toStdString();
        }
        EXPECT_EQ(host.commands.size(), otherHost.commands.size());
        ExportResult meanwhile = ExportResult::Done;
        host.onRun = [&] {
            meanwhile = second->Export(cDocument, choices, reason);
            second->DoAction(nullptr, cDocument, nullptr);  // opens no dialog: nobody would close it
        };
        first->Export(cDocument, choices, reason);
        host.onRun = nullptr;
        host.commands.pop_back();
        EXPECT_EQ(meanwhile, ExportResult::Busy);
        EXPECT_TRUE(isFirstGone ? plugIn->Unload() : other.Unload());
        EXPECT_NE(QCoreApplication::instance(), nullptr);
        {
            WindowDriver driver({[](QWidget&) { WindowDriver::Click(Qt::Key_Escape); }});
            (isFirstGone ? second : first)->DoAction(nullptr, cDocument, nullptr);
        }
        EXPECT_TRUE(isFirstGone ? other.Unload() : plugIn->Unload());
        EXPECT_EQ(QCoreApplication::instance(), nullptr);
    }
    EXPECT_EQ(other.GetHandleCount(), 0U);
    EXPECT_EQ(otherHost.GetUnreleased(), QStringList());
}
