#include "ExportRun.h"
#include "FakeStateList.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/ModulePlugIn.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/host/IPlugIn.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/WindowDriver.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

#include <string>

namespace
{
constexpr ActionID cDocument = 1674244;
constexpr ActionID cBook = 1674246;

// Sets an environment variable for its lifetime.
class Variable
{
public:
    Variable(const char* name, const char* value)
        : mName(name), mOld(qgetenv(name)), mWasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(mName, value);
    }
    ~Variable() { mWasSet ? qputenv(mName, mOld) : qunsetenv(mName); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* mName;
    QByteArray mOld;
    bool mWasSet;
};

// The module as a host has it: loaded at run time, and known by its entry alone.
class Module : public testing::Test
{
protected:
    Module() : library(QStringLiteral(HOPBOX_MODULE)) { Load(); }

    ~Module() override
    {
        EXPECT_EQ(module->GetHandleCount(), 0U);
        EXPECT_TRUE(plugIn->Unload());
        EXPECT_EQ(host.GetUnreleased(), QStringList());
        library.unload();
    }

    void Load()
    {
        const auto entry = reinterpret_cast<hopbox_entry_function>(library.resolve(HOPBOX_ENTRY_NAME));
        EXPECT_NE(entry, nullptr) << library.errorString().toStdString();
        module = std::make_unique<ModulePlugIn>(entry);
        plugIn = module.get();
    }

    // The entry for who shares the compiler, past the boundary.
    void LoadDirectly()
    {
        plugIn = reinterpret_cast<GetPlugInFunction>(library.resolve(cGetPlugInName))();
        ASSERT_EQ(plugIn->GetInterfaceVersion(), IHostServices::cVersion);
    }

    // What the plug-in says against the services; empty when it takes them.
    QString GiveServices(IHostServices* services)
    {
        PMString reason;
        const bool isTaken = plugIn->Load(services, reason);
        EXPECT_EQ(isTaken, reason.IsEmpty());
        return reason.GetString();
    }

    // Sets `error` to what the plug-in says against it.
    IActionComponent* Create()
    {
        PMString text;
        IActionComponent* component = plugIn->CreateActionComponent(text);
        error = text.GetString();
        return component;
    }

    // One document of three pages in front, which is also the book.
    void MakeDocumentAndBook()
    {
        FakeDocument document;
        document.name = "Report.indd"_q;
        document.path = sandbox.GetPath(document.name);
        document.pageCount = 3;
        host.documents = {document};
        FakeBook book;
        book.path = sandbox.GetPath("Year.indb"_q);
        book.documentPaths = QStringList{document.path};
        host.books = {book};
    }

    static void SpeakGerman()
    {
        const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
                                     .GetChild("Junctra_CC2019_64_InDesign"_q);
        GFileSystemBase::CreateFolder(folder);
        PlugInPrefModule settings(folder.GetChild("JunctraPlugins.pref"_q));
        settings.Set("General", "Language", "deDE"_q);
        settings.FlushPrefs();
    }

    Sandbox sandbox;
    QLibrary library;
    FakeHost host;
    std::unique_ptr<ModulePlugIn> module;
    IPlugIn* plugIn = nullptr;
    QString error;
};
}  // namespace

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
    plugIn->Unload();
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
        plugIn->Unload();
        EXPECT_EQ(QCoreApplication::instance(), own.get()) << application;
    }
}

// A window system that is not there ends a process that starts Qt's windows.
TEST_F(Module, RefusesAProcessThatCanShowNoWindows)
{
    const struct
    {
        const char* platform;
        const char* display;
        bool isUsable;
    } cases[] = {
        {"nonsense", ":4711", false}, {"xcb", ":4711", false},          {"xcb", "", false},
        {"wayland", "", false},       {"nonsense;offscreen", "", true}, {"offscreen:x", ":4711", true}};
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.platform + std::string(" on ") + entry.display);
        const Variable platform("QT_QPA_PLATFORM", entry.platform);
        const Variable display("DISPLAY", entry.display);
        const Variable wayland("WAYLAND_DISPLAY", "wayland-4711");
        ASSERT_EQ(GiveServices(&host), QString());
        EXPECT_EQ(Create() != nullptr, entry.isUsable) << error.toStdString();
        EXPECT_EQ(error.isEmpty(), entry.isUsable);
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

// The string files beside the module, the settings file and the alerts have found each other.
TEST_F(Module, SpeaksTheLanguageOfItsSettings)
{
    SpeakGerman();
    MakeHopbox("Press"_q);
    HopboxRegistry().ChangeEntry("Press"_q, [](HopboxRegistryEntry& entry) {
        entry.contextFilePath = GPathName();  // its export fails
    });
    ASSERT_EQ(GiveServices(&host), QString());
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    WindowDriver driver({[](QWidget& dialog) {
                             EXPECT_EQ(dialog.windowTitle(), "An Hopbox exportieren"_q);
                             FindWithText(dialog, "Dateipaket einschlie\u00DFen");
                             WindowDriver::Click(Qt::Key_Return);
                         },
                         [](QWidget& alert) {
                             EXPECT_EQ(alert.windowTitle(), "Fehler beim Export an Hopbox"_q);
                             WindowDriver::Click(Qt::Key_Escape);
                         },
                         [](QWidget&) { WindowDriver::Click(Qt::Key_Return); },
                         [](QWidget& alert) {
                             const QString text = dynamic_cast<QMessageBox&>(alert).text();
                             EXPECT_TRUE(text.startsWith("Eine Datei oder ein Ordner konnte nicht "_q))
                                 << text.toStdString();
                             EXPECT_TRUE(text.contains("Temp"_q)) << text.toStdString();
                             WindowDriver::Click(Qt::Key_Escape);
                         }});
    component->DoAction(nullptr, cDocument, nullptr);
    // The file layer's own words stand behind a sentence in that language.
    const GPathName temporary = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary);
    GFileSystemBase::TryToRemoveFolder(temporary);
    WriteFile(temporary.GetNativePath(), "in the way");
    component->DoAction(nullptr, cDocument, nullptr);
}

// Before its texts are there, and about its host.
TEST_F(Module, RefusesAndBlamesTheHostInTheLanguageOfItsSettings)
{
    SpeakGerman();
    MakeHopbox("Press"_q);
    MakeDocumentAndBook();
    const hopbox_plugin_table& table =
        *reinterpret_cast<hopbox_entry_function>(library.resolve(HOPBOX_ENTRY_NAME))(HOPBOX_VERSION);
    const Boundary::TextSink reason;
    EXPECT_EQ(table.load(nullptr, nullptr, reason), HOPBOX_FAILED);
    EXPECT_EQ(reason.GetTexts().value(0), "Das Plug-in braucht die Version 1 der Tabelle der Anwendung."_q);
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(error, "Das Plug-in ist nicht geladen."_q);
    ASSERT_EQ(GiveServices(&host), QString());
    EXPECT_EQ(GiveServices(&host), "Das Plug-in ist schon geladen."_q);
    {
        const Variable platform("QT_QPA_PLATFORM", "nonsense");
        EXPECT_EQ(Create(), nullptr);
        EXPECT_EQ(error,
                  "Das Plug-in kann seine Fenster nicht zeigen: Das Plattform-Plug-in \u201Enonsense\u201C "
                  "von Qt fehlt."_q);
    }
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(error, "Die Aktionen des Plug-ins sind schon in Gebrauch."_q);
    host.documents.front().missingFonts =
        QVector<QString>(100'001, "A"_q).toList();  // more than a host can mean
    PMString alert;
    EXPECT_EQ(component->Export(cDocument, {PMString("Press"_q), PMString(), false}, alert),
              ExportResult::Failed);
    EXPECT_TRUE(
        alert.GetString().endsWith("\nDie Anwendung nennt die fehlenden Schriften eines Dokuments nicht."_q))
        << alert.GetString().toStdString();
    component->DoAction(nullptr, 1674240, nullptr);
    EXPECT_TRUE(host.alerts.value(0).startsWith("An Hopbox exportieren 18, "_q));
}

// From the menu choice to the ticket that a running Hopbox process takes up, with no hand on the mouse: the
// second Hopbox of the list, pages 2 and 3.
TEST_F(Module, ExportsThroughItsDialogByKeysAlone)
{
    struct Case
    {
        const char* name;
        bool isQtProgram;
        ActionID action;
    };
    for (const Case& entry : {Case{"document, Qt program", true, cDocument},
                              {"document, other program", false, cDocument},
                              {"book, other program", false, cBook}}) {
        SCOPED_TRACE(entry.name);
        int count = 1;
        char name[] = "host";
        char* list[] = {name, nullptr};
        const auto own = entry.isQtProgram ? std::make_unique<QApplication>(count, list) : nullptr;
        HopboxRegistry().Clear();
        MakeHopbox("A"_q);
        MakeHopbox("B"_q, {"UserSettings=true"_q});
        for (const char* actor : {"A", "B"})
            HopboxRegistry().ChangeEntry(QLatin1String(actor), [&](HopboxRegistryEntry& record) {
                record.pdfSettings = "Settings "_q + QLatin1String(actor);
            });
        MakeDocumentAndBook();
        ASSERT_EQ(GiveServices(&host), QString());
        IActionComponent* component = Create();
        ASSERT_NE(component, nullptr) << error.toStdString();
        PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
        {
            WindowDriver driver({[&](QWidget& dialog) {
                WindowDriver::Click(Qt::Key_Down);
                if (entry.action == cDocument) {
                    WindowDriver::Click(Qt::Key_R, Qt::AltModifier);
                    const auto* range = qobject_cast<QRadioButton*>(FindWithText(dialog, "Range:"));
                    EXPECT_TRUE(QTest::qWaitFor([&] { return range->isChecked(); }));
                    WindowDriver::Click(Qt::Key_Tab);
                    WindowDriver::Type("2-3"_q);
                }
                WindowDriver::Click(Qt::Key_Return);
            }});
            component->DoAction(nullptr, entry.action, nullptr);
        }
        const QJsonObject job = receiver.ReadLine();
        EXPECT_EQ(job.value("PrinterName"_q).toString(), "B"_q);
        EXPECT_TRUE(ReadFile(job.value("saved"_q).toString()).startsWith("%PDF"));
        if (entry.action == cDocument) {
            EXPECT_EQ(host.commands.back()->pages, (std::vector<UID>{GetPageUID(2), GetPageUID(3)}));
        }
        plugIn->Unload();
    }
}

// What a host's command line asks for, through the boundary: no window opens, as no driver is there to
// answer.
TEST_F(Module, ExportsWithoutADialogWhatAScriptAsksFor)
{
    MakeHopbox("Press"_q);
    MakeHopbox("Withdrawn"_q);
    HopboxRegistry().ChangeEntry("Withdrawn"_q, [](HopboxRegistryEntry& entry) { entry.isPlugin = false; });
    MakeDocumentAndBook();
    ASSERT_EQ(GiveServices(&host), QString());
    IActionComponent* component = Create();
    ASSERT_NE(component, nullptr) << error.toStdString();
    const auto exportTo = [&](ActionID action, const QString& hopbox, const QString& pages, bool hasPackage) {
        PMString reason;
        ExportChoices choices{PMString(hopbox), PMString(pages), hasPackage};
        const ExportResult result = component->Export(action, choices, reason);
        error = reason.GetString();
        return result;
    };
    PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
    EXPECT_EQ(exportTo(cDocument, "Press"_q, "2-3"_q, true), ExportResult::Done) << error.toStdString();
    EXPECT_EQ(host.commands.back()->pages, (std::vector<UID>{GetPageUID(2), GetPageUID(3)}));
    EXPECT_EQ(host.packages.size(), 1U);
    EXPECT_EQ(exportTo(cBook, "Press"_q, {}, false), ExportResult::Done) << error.toStdString();
    EXPECT_EQ(host.packages.size(), 1U);
    for (const QString& hopbox : {"Nobody"_q, "Withdrawn"_q}) {
        EXPECT_EQ(exportTo(cDocument, hopbox, {}, false), ExportResult::Failed);
        EXPECT_EQ(error, "Unable to retrieve PDF setting: "_q + hopbox);
    }
    EXPECT_EQ(exportTo(cBook, "Press"_q, "1"_q, false), ExportResult::Unsupported);
    EXPECT_EQ(exportTo(1674240, "Press"_q, {}, false), ExportResult::Unsupported);
    host.onRun = [&] {
        EXPECT_EQ(exportTo(cBook, "Press"_q, {}, false), ExportResult::Busy);
        EXPECT_FALSE(plugIn->Unload());
        host.CancelByUser();
    };
    EXPECT_EQ(exportTo(cDocument, "Press"_q, {}, false), ExportResult::Cancelled);
    host.onRun = nullptr;
    receiver.Kill();
    EXPECT_EQ(exportTo(cDocument, "Press"_q, {}, false), ExportResult::Failed);
    EXPECT_EQ(error, cNobodyTakesIt);
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
