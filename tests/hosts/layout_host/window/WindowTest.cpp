#include "hosts/layout_host/window/HostWindow.h"
#include "hosts/scribus/host/PlugInModule.h"
#include "hosts/scribus/panels/BookPanel.h"
#include "hosts/scribus/panels/HostTexts.h"
#include "hosts/scribus/panels/PositionedMenu.h"
#include "hosts/scribus/panels/ReportPanel.h"
#include "hosts/scribus/panels/WindowFrontend.h"
#include "tests/support/Test.h"
#include "tests/support/WindowDriver.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QJsonArray>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QTranslator>
#include <QTreeWidget>

namespace
{
// An owner of actions that answers for two of three.
class Owner : public CActionComponent
{
public:
    void UpdateActionStates(IActiveContext*, IActionStateList& states) override
    {
        for (int32_t index = 0; index < states.Length(); ++index) {
            if (states.GetNthAction(index) == 3)
                continue;
            states.SetNthActionEnabled(index, states.GetNthAction(index) == 1);
            states.SetNthActionName(index, PMString("Action %1"_q.arg(states.GetNthAction(index))));
            states.SetNthActionShortcut(index, PMString("Alt+Shift+E"_q));
        }
    }
};

QStringList DescribeEntries(const QMenu& menu)
{
    QStringList entries;
    for (const QAction* action : menu.actions())
        entries.append(
            action->isSeparator()
                ? "-"_q
                : action->text() + (action->isEnabled() ? QString() : " (greyed)"_q) +
                      (action->shortcut().isEmpty() ? QString() : " "_q + action->shortcut().toString()));
    return entries;
}

void Choose(const QWidget& window, const QString& entry)
{
    for (QAction* action : window.findChildren<QAction*>()) {
        if (QString(action->text()).remove("&"_q) == entry)
            action->trigger();
    }
}

void Press(QWidget& window, const char* button)
{
    static_cast<QAbstractButton*>(FindWithText(window, button))->click();
}
}  // namespace

TEST(HostWindow, PlugInEntriesStandAtTheirPositionsWithTheirStates)
{
    HostMenus menus;
    const HostPtr<IMenuManager> places = menus.QueryMenuManager();
    const PMString file(HostMenuPath::cFile);
    for (const ActionID action : {1, 2, 3})
        menus.AddAction(0, action, PMString("Registered"_q), PMString(), ActionFlags());
    places->AddMenuItem(2, file, 450.5, MenuItemFlags());
    places->AddMenuItem(1, file, 1301, MenuItemFlags());
    places->AddMenuItem(3, file, 50, MenuItemFlags());
    places->AddMenuItem(1, PMString(HostMenuPath::cBookPanel), 1101, MenuItemFlags());
    Owner owner;
    menus.UpdateStates(owner);

    QMenu menu;
    PositionedMenu entries(menu);
    entries.Add(9000, "Quit"_q, [] {});
    entries.Add(410, "Save"_q, [] {});
    ActionID chosen = 0;
    entries.Finish(menus.GetEntries(HostMenuPath::cFile), [&](ActionID action) { chosen = action; });
    EXPECT_EQ(DescribeEntries(menu),
              "Registered (greyed)|-|Save|Action 2 (greyed) Alt+Shift+E|-|Action 1 Alt+Shift+E|-|Quit"_list);
    menu.actions().at(5)->trigger();
    EXPECT_EQ(chosen, 1);
}

TEST(HostWindow, CancelStopsARunningCommand)
{
    QWidget window;
    window.show();
    WindowFrontend frontend(window);
    frontend.BeginCommand("Export PDF"_q, 2);
    frontend.BeginStep("Page 1"_q);
    EXPECT_FALSE(frontend.IsCancelled());
    EXPECT_EQ(window.findChild<QProgressBar*>()->maximum(), 2);
    Press(*window.findChild<QDialog*>(), "Cancel");
    EXPECT_TRUE(frontend.IsCancelled());
    frontend.EndCommand();
    frontend.BeginCommand("Export PDF"_q, 1);
    EXPECT_FALSE(frontend.IsCancelled());
    EXPECT_EQ(window.findChild<QProgressBar*>()->maximum(), 0) << "a single step shows no part";
    frontend.EndCommand();
}

TEST(HostWindow, AsksWhetherAnExportIsToGoOnWithItsProblems)
{
    QWidget window;
    window.show();
    WindowFrontend frontend(window);
    frontend.BeginCommand("Export PDF"_q, 1);
    QStringList problems;
    for (int i = 1; i <= 14; ++i)
        problems.append("Problem %1."_q.arg(i));
    QString told;
    const auto press = [&](const char* button) {
        return [button, &told](QWidget& question) {
            told = static_cast<QMessageBox&>(question).informativeText();
            Press(question, button);
        };
    };
    using Decision = IHostFrontend::Decision;
    WindowDriver driver({press("Cancel"), press("Export Anyway")});
    EXPECT_EQ(frontend.AskToGoOn("a.sla"_q, problems), Decision::Cancel);
    EXPECT_TRUE(told.startsWith("Problem 1.\nProblem 2."_q) && told.endsWith("Problem 12.\nand 2 more"_q));
    EXPECT_EQ(frontend.AskToGoOn("a.sla"_q, problems), Decision::GoOn);
    EXPECT_FALSE(frontend.IsCancelled());
    frontend.EndCommand();
}

TEST(HostWindow, NewsOfAnExportAreAListAndOthersAreNone)
{
    const Sandbox sandbox;
    const QString pdf = sandbox.GetPath("a.pdf"_q);
    ScribusHost host;
    ReportPanel panel(nullptr);
    const auto* rows = panel.findChild<QTreeWidget*>();
    const auto* heading = panel.findChild<QLabel*>();
    EXPECT_FALSE(panel.ShowNews(host, 0));
    host.SetLastPDF(pdf, {{"settings"_q, QJsonArray{QJsonObject{{"key"_q, "Slug"_q},
                                                                {"asked"_q, "true"_q},
                                                                {"answer"_q, "not possible"_q},
                                                                {"note"_q, "it is <b>cut</b> off"_q}}}},
                          {"notes"_q, QJsonArray{"A note."_q}}});
    EXPECT_TRUE(panel.ShowNews(host, 0));
    EXPECT_FALSE(panel.ShowNews(host, 1)) << "an export before this one";
    ASSERT_EQ(rows->topLevelItemCount(), 2);
    EXPECT_EQ(rows->topLevelItem(0)->text(2), "not possible"_q);
    EXPECT_EQ(rows->topLevelItem(0)->text(3), "it is <b>cut</b> off"_q);
    EXPECT_EQ(rows->topLevelItem(1)->text(0), "A note."_q);
    EXPECT_TRUE(heading->text().contains(pdf));
    host.SetLastFailure("The user cancelled."_q);
    EXPECT_FALSE(panel.ShowNews(host, 0));
    host.SetLastFailure("\"two.sla\": it is damaged."_q);
    EXPECT_TRUE(panel.ShowNews(host, 0)) << "a PDF was made, but the package failed";
    EXPECT_TRUE(heading->text().contains("two.sla"_q));
    EXPECT_EQ(rows->topLevelItemCount(), 0);
}

TEST(HostWindow, AnEmptyBookSaysSo)
{
    ScribusHost host;
    BookPanel panel(host, nullptr);
    const auto* list = panel.findChild<QListWidget*>();
    const auto enabled = [&] {
        return DescribeEntries(panel.GetPopupMenu()).filter("Remove"_q) +
               DescribeEntries(panel.GetPopupMenu()).filter("Number"_q);
    };
    panel.GetEntries().Finish({}, nullptr);
    EXPECT_EQ(list->item(0)->text(), "No book is open."_q);
    const ScribusHost::BookPtr book = host.NewBook("/nowhere/a.slabook"_q);
    panel.Refresh();
    EXPECT_EQ(list->item(0)->text(), "This book is empty. Its menu adds documents."_q);
    panel.findChild<QListWidget*>()->setCurrentRow(0);
    EXPECT_EQ(enabled(), "&Remove Document (greyed)|&Number Pages On"_list);
    Choose(panel, "Number Pages On"_q);
    EXPECT_TRUE(book->IsNumberedOn());
    book->SetDocuments({"/nowhere/a.sla"_q});
    panel.Refresh();
    EXPECT_EQ(list->count(), 1);
    panel.findChild<QListWidget*>()->setCurrentRow(0);
    EXPECT_EQ(enabled(), "&Remove Document|&Number Pages On"_list);
}

TEST(HostWindow, SpeaksTheLanguageOfTheSystem)
{
    const struct
    {
        const char* locale;
        const char* text;
        const char* module;
    } cases[] = {{"de_AT", "Kein Buch ist ge\u00F6ffnet.",
                  "Das Plug-in \u201E%1\u201C kann nicht benutzt werden: "
                  "Es hat keinen Einsprungpunkt \u201Ehopbox_plugin\u201C."},
                 {"fr_CA", "Aucun livre n\u2019est ouvert.",
                  "Le module externe \u00AB %1 \u00BB ne peut pas \u00EAtre utilis\u00E9 : "
                  "il n\u2019a pas de point d\u2019entr\u00E9e \u00AB hopbox_plugin \u00BB."},
                 {"pt_BR", "No book is open.",
                  "The plug-in \"%1\" can't be used: it has no entry \"hopbox_plugin\"."}};
    ScribusHost host;
    for (const auto& item : cases) {
        HostTexts::Load(QLocale(QLatin1String(item.locale)));
        const BookPanel panel(host, nullptr);
        EXPECT_EQ(panel.findChild<QListWidget*>()->item(0)->text(), QString::fromUtf8(item.text));
        PlugInModule module;
        EXPECT_EQ(module.Load("libm.so.6"_q, host).GetReason(),
                  QString::fromUtf8(item.module).arg("libm.so.6"_q));
        for (const QTranslator* translator : qApp->findChildren<QTranslator*>())
            delete translator;
    }
}

TEST(HostWindow, APlugInThatRefusesIsNotKept)
{
    ScribusHost host;
    qputenv("TEST_REFUSES_ACTIONS", "1");
    PlugInModule refusing;
    EXPECT_TRUE(refusing.Load(QStringLiteral(SHORT_MODULE), host)
                    .GetReason()
                    .endsWith("The plug-in gave no reason."_q));
    qunsetenv("TEST_REFUSES_ACTIONS");
    PlugInModule another;
    EXPECT_EQ(another.Load(QStringLiteral(SHORT_MODULE), host).GetReason(), QString());
}

// An untitled document and a changed book, each with every answer.
TEST(HostWindow, AsksBeforeItClosesWhatNoFileHolds)
{
    const Sandbox sandbox;
    const QString saved = sandbox.GetPath("Saved.sla"_q);
    const QString book = sandbox.GetPath("Book.slabook"_q);
    HostWindow window((ScribusSetup()));
    window.show();
    const auto type = [](const QString& path) {
        return [path](QWidget&) {
            WindowDriver::Type(path);
            WindowDriver::Click(Qt::Key_Return);
        };
    };
    const auto press = [](const char* button) {
        return [button](QWidget& question) { Press(question, button); };
    };
    qputenv("HOPBOX_PLUGIN", "/nowhere");
    WindowDriver driver({press("OK"),  // that there is no plug-in
                         type("/usr/share/scribus/templates/buscard1/buscard1.sla.gz"_q), press("Cancel"),
                         press("Save"), type(sandbox.GetPath("Saved"_q)), press("No"), press("Save"),
                         type(saved), press("Yes"), type(book), press("Cancel"), press("Save")});
    window.Start({});
    Choose(window, "New from Template..."_q);
    EXPECT_FALSE(window.close());
    WriteFile(saved, "another document");
    Choose(window, "Close"_q);
    EXPECT_EQ(ReadFile(saved), "another document");
    Choose(window, "Close"_q);
    EXPECT_NE(ReadFile(saved), "another document");
    Choose(window, "New Book..."_q);
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(ReadFile(book).contains("layout-host book"));
}
