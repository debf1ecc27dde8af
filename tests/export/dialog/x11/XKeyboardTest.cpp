#include "XServer.h"

#include "DialogFixture.h"
#include "export/dialog/RunExportDialog.h"
#include "widgets/GCUSMessageBox.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>

extern std::unique_ptr<XServer> xServer;

class XKeyboardTest : public DialogFixture
{
protected:
    ~XKeyboardTest() override
    {
        for (const char* key : {"Alt_L", "Shift_L", "Control_L", "ISO_Level3_Shift", "Super_L", "Return"})
            XServer::Do(QByteArray("keyup ").append(key).constData());
    }

    void OpenWith(std::initializer_list<const char*> names)
    {
        HopboxRegistry().Clear();
        for (const char* name : names)
            Add(name, name);
        Open();
    }

    // As a window manager tells it.
    static void SetProperty(const QStringList& window, const QString& name, const QList<int>& numbers)
    {
        QStringList texts;
        for (const int number : numbers)
            texts.append(QString::number(static_cast<quint32>(number)));
        const QStringList words =
            window + QStringList{"-f"_q, name, "32c"_q, "-set"_q, name, texts.join(", "_q)};
        EXPECT_EQ(QProcess::execute("xprop"_q, words), 0);
    }

    void SetFrame(const QMargins& frame)
    {
        SetProperty({"-id"_q, QString::number(mDialog->winId())}, "_NET_FRAME_EXTENTS"_q,
                    {frame.left(), frame.right(), frame.top(), frame.bottom()});
    }

    void MoveMouseTo(const QWidget& widget)
    {
        const QPoint place = widget.mapToGlobal(widget.rect().center());
        XServer::Do(QStringLiteral("mousemove %1 %2").arg(place.x()).arg(place.y()).toLatin1().constData());
    }
};

TEST_F(XKeyboardTest, RemoveFollowsAltInEveryOrderOfTheModifiers)
{
    const std::pair<const char*, const char*> cases[] = {
        {"keydown Alt_L", "Remove"},
        {"keydown Alt_L keyup Alt_L", "OK"},
        {"keydown Alt_L keydown Shift_L", "Remove"},
        {"keydown Alt_L keydown Shift_L keyup Alt_L", "OK"},
        {"keydown Alt_L keydown Shift_L keyup Shift_L", "Remove"},
        {"keydown Alt_L keydown Shift_L keyup Shift_L keyup Alt_L", "OK"},
        {"keydown Shift_L keydown Alt_L", "Remove"},
        {"keydown Shift_L keydown Alt_L keyup Shift_L", "Remove"},
        {"keydown Shift_L keydown Alt_L keyup Alt_L", "OK"},
        {"keydown Shift_L keydown Alt_L keyup Shift_L keyup Alt_L", "OK"},
        {"keydown Control_L keydown Alt_L", "Remove"},
        {"keydown Control_L keydown Alt_L keyup Alt_L", "OK"},
        {"keydown Alt_L keydown Control_L keyup Alt_L", "OK"},
        {"keydown ISO_Level3_Shift", "OK"},
        {"keydown ISO_Level3_Shift keydown Alt_L", "Remove"},
        {"keydown Alt_L keydown ISO_Level3_Shift keyup Alt_L", "OK"},
        {"keydown Alt_L keydown ISO_Level3_Shift keyup ISO_Level3_Shift", "Remove"},
        {"keydown Super_L", "OK"},
        {"keydown Shift_L keydown Super_L", "OK"},
        {"keydown Alt_L keydown Super_L keyup Super_L", "Remove"},
    };
    for (const auto& [keys, text] : cases) {
        SCOPED_TRACE(keys);
        OpenWith({"a", "b"});
        XServer::Do(keys);
        EXPECT_EQ(ok->text(), QString::fromLatin1(text));
        EXPECT_TRUE(ok->icon().isNull());
        const bool isRemoving = ok->text() == "Remove"_q;
        MoveMouseTo(*ok);
        XServer::Do("click 1");
        EXPECT_EQ(list->count(), isRemoving ? 1 : 2);
        EXPECT_EQ(mDialog->isVisible(), isRemoving);
        EXPECT_EQ(party.host.commands.size(), isRemoving ? 0u : 1u);
        party.host.commands.clear();
        XServer::Do("keyup Alt_L keyup Shift_L keyup Control_L keyup ISO_Level3_Shift keyup Super_L");
    }
}

TEST_F(XKeyboardTest, HeldDownEnterRemovesOneHopbox)
{
    OpenWith({"a", "b", "c", "d"});
    XServer::Do("keydown Alt_L keydown Return sleep 1.2 keyup Return keyup Alt_L");
    EXPECT_EQ(GetList(), "[b] c d"_q);
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(XKeyboardTest, HeldDownEnterClosesOneAlert)
{
    const WindowDriver driver({[](QWidget&) { XServer::Do("keydown Return"); },
                               [](QWidget& alert) {
                                   XServer::Do("sleep 1.2 keyup Return");
                                   EXPECT_TRUE(alert.isVisible());
                                   XServer::Do("key Return");
                               }});
    GCUSMessageBox::ShowError("Export"_q, "The first alert."_q);
    GCUSMessageBox::ShowError("Export"_q, "The second alert."_q);
}

TEST_F(XKeyboardTest, AnotherWindowEndsRemove)
{
    QMainWindow other;
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    OpenWith({"a", "b"});
    XServer::Do("keydown Alt_L");
    EXPECT_EQ(ok->text(), "Remove"_q);
    XServer::Do("key Tab");
    XServer::Do("keyup Alt_L");  // goes to the window manager
    EXPECT_TRUE(QTest::qWaitFor([&] { return ok->text() == "OK"_q; }));
}

TEST_F(XKeyboardTest, WhereTheWindowManagerKeepsAltWithAClickEnterAndTheListsMenuRemove)
{
    for (const bool isKept : {false, true}) {
        xServer->StartManager(isKept);
        OpenWith({"a", "b", "c", "d"});
        MoveMouseTo(*ok);
        XServer::Do("keydown Alt_L click 1 keyup Alt_L");
        EXPECT_EQ(list->count(), isKept ? 4 : 3);
        XServer::Do("keydown Alt_L key Return keyup Alt_L");
        EXPECT_EQ(list->count(), isKept ? 3 : 2);
        MoveMouseTo(*list);
        XServer::Do("click 3");
        XServer::Do("key Down key Return");
        EXPECT_EQ(list->count(), isKept ? 2 : 1);
        EXPECT_TRUE(party.host.commands.empty());
    }
}

// Offscreen, windows have no frame. Qt asks for it when the window is moved or resized, and is not told when
// the window manager gives another one later: here, when it is gone, the test does.
TEST_F(XKeyboardTest, OKAndCancelStayOnTheScreenWithinTheFrameOfTheWindowManager)
{
    const auto expectKept = [&](const QMargins& frame) {
        const QRect room = mDialog->screen()->availableGeometry().marginsRemoved(frame);
        Find("Options").click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return room.contains(mDialog->geometry()); }))
            << mDialog->geometry().bottom() << " " << room.bottom();
    };
    const auto moveAndWaitFor = [&](const std::function<bool(const QMargins&)>& isFrame) {
        mDialog->move(500, 400);
        EXPECT_TRUE(QTest::qWaitFor([&] { return isFrame(mDialog->windowHandle()->frameMargins()); }));
    };
    OpenWith({"a"});
    moveAndWaitFor([](const QMargins& frame) { return frame.top() > 0 && frame.bottom() > 0; });
    expectKept(mDialog->windowHandle()->frameMargins());
    const QMargins given(40, 50, 40, 40);
    for (const QMargins& before : {QMargins(), QMargins(0, 200, 0, -226)}) {
        SCOPED_TRACE(before.bottom());
        xServer->StartManager(false);
        OpenWith({"a"});
        xServer->StopManager();
        SetFrame(before);
        moveAndWaitFor([&](const QMargins& frame) { return frame == before; });
        SetFrame(given);
        expectKept(given);
    }
    xServer->StartManager(false);
}

TEST_F(XKeyboardTest, TheDialogFollowsAScreenThatBecomesSmaller)
{
    OpenWith({"a"});
    Find("Options").click();
    const int width = mDialog->width();
    for (const QSize& size : {QSize(1000, 400), QSize(width - 30, 500)}) {
        SetProperty({"-root"_q}, "_NET_WORKAREA"_q, {0, 0, size.width(), size.height()});
        EXPECT_TRUE(QTest::qWaitFor([&] {
            const QRect room = mDialog->screen()->availableGeometry();
            return room.size() == size && room.contains(mDialog->frameGeometry());
        })) << mDialog->frameGeometry().right()
            << " " << mDialog->frameGeometry().bottom();
    }
    SetProperty({"-root"_q}, "_NET_WORKAREA"_q, {0, 0, 1000, 700});
}

// From the menu to the alert, with Enter held down long on the way.
TEST_F(XKeyboardTest, AnExportNeedsNoMouse)
{
    HopboxRegistry().Clear();
    Add("a", "Alpha");
    Add("b", "Beta press");
    QMainWindow window;
    QAction* action = window.menuBar()->addMenu("&File"_q)->addAction("Export to Hopbox..."_q);
    const DialogOptions options = GetAllOptions();
    QObject::connect(action, &QAction::triggered, [&] {
        GCPTSaveAsTool tool(party.action, options);
        RunExportDialog("Export to Hopbox"_q, tool);
    });
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const WindowDriver driver({[&](QWidget& dialog) {
        XServer::Do("sleep 1.2 keyup Return");
        EXPECT_TRUE(dialog.isVisible()) << "closed by the Enter that opened it";
        XServer::Do("type beta");
        EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), "Beta press"_q);
        XServer::Do("key alt+r");
        EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.findChild<QLineEdit*>()->isEnabled(); }));
        XServer::Do("key Tab");
        XServer::Do("type 2,1");
        XServer::Do("key Return");
    }});
    XServer::Do("key alt+f key Down");
    XServer::Do("keydown Return");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !party.host.commands.empty(); }, 20000));
    ASSERT_FALSE(party.host.commands.empty());
    EXPECT_EQ(party.host.commands.front()->pages, (std::vector<UID>{GetPageUID(2), GetPageUID(1)}));
}
