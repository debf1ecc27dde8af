#include "ModuleFixture.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/boundary/BoundaryText.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/WindowDriver.h"

#include <QApplication>
#include <QMessageBox>
#include <QRadioButton>
#include <QTest>

// What a person sees of the module and what a script asks of it, up to the receiver.

// The string files beside the module, the settings file and the alerts have found each other.
TEST_F(Module, SpeaksTheLanguageOfItsSettings)
{
    SpeakGerman();
    MakeHopbox("Press"_q);
    EXPECT_TRUE(HopboxRegistry().ChangeEntry("Press"_q, [](HopboxRegistryEntry& entry) {
        entry.contextFilePath = GPathName();  // its export fails
    }));
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
    GFileSystemBase::DropFolder(temporary);
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
    const Boundary::TextSink unread;
    EXPECT_EQ(table.export_to(cDocument, nullptr, nullptr, HOPBOX_AS_SET, unread), HOPBOX_FAILED);
    EXPECT_EQ(unread.GetTexts().value(0),
              QString::fromUtf8("Was die Anwendung gewählt hat, ist nicht lesbar."));
    host.Make(HostOperation::QueryBookContent, HostAnswer::Raises);
    EXPECT_EQ(component->Export(cBook, {PMString("Press"_q), PMString(), false}, alert),
              ExportResult::Failed);
    EXPECT_TRUE(alert.GetString().endsWith("\nDie Anwendung nennt die Dokumente eines Buchs nicht."_q))
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
            EXPECT_TRUE(HopboxRegistry().ChangeEntry(QLatin1String(actor), [&](HopboxRegistryEntry& record) {
                record.pdfSettings = "Settings "_q + QLatin1String(actor);
            }));
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
        EXPECT_TRUE(plugIn->Unload());
    }
}

// What a host's command line asks for, through the boundary: no window opens, as no driver is there to
// answer.
TEST_F(Module, ExportsWithoutADialogWhatAScriptAsksFor)
{
    MakeHopbox("Press"_q);
    MakeHopbox("Withdrawn"_q);
    EXPECT_TRUE(HopboxRegistry().ChangeEntry("Withdrawn"_q,
                                             [](HopboxRegistryEntry& entry) { entry.isPlugin = false; }));
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
