#include "tests/support/Test.h"
#include "widgets/GCUSModal.h"
#include "widgets/GQUICollapsibleFrame.h"
#include "widgets/GQUIProgressWindow.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>

// Counts the time that windows are modal.
class ModalTime : public testing::Test
{
protected:
    ModalTime()
    {
        GCUSModal::SetHooks([this] { ++depth; }, [this] { --depth; });
        GCUSModal::SetParentWindowProvider([this] { return host.winId(); });
    }

    ~ModalTime() override
    {
        GCUSModal::SetHooks({}, {});
        GCUSModal::SetParentWindowProvider({});
    }

    QWidget host;
    int depth = 0;
};

TEST_F(ModalTime, IsThatOfADialogAndOverTheHostsWindow)
{
    GQUIWindow window;
    int depthInside = 0;
    QWindow* parent = nullptr;
    QTimer::singleShot(0, &window, [&] {
        depthInside = depth;
        parent = window.windowHandle()->transientParent();
        QTest::keyClick(&window, Qt::Key_Escape);
    });
    EXPECT_EQ(window.exec(), int(QDialog::Rejected));
    EXPECT_EQ(depthInside, 1);
    EXPECT_EQ(depth, 0);
    EXPECT_EQ(parent, host.windowHandle());

    GQUIWindow own(&window);  // belongs to its parent widget
    QTimer::singleShot(0, &own, [&] {
        parent = own.windowHandle()->transientParent();
        own.accept();
    });
    EXPECT_EQ(own.exec(), int(QDialog::Accepted));
    EXPECT_EQ(parent, window.windowHandle());
}

TEST_F(ModalTime, LastsWhileATaskGoesOn)
{
    GQUIProgressWindow window("Exporting"_q);
    const QSignalSpy cancelled(&window, &GQUIProgressWindow::Cancelled);
    const auto* bar = window.findChild<QProgressBar*>();
    auto* button = window.findChild<QPushButton*>();
    const std::function<void()> ways[] = {
        [&] { QTest::mouseClick(button, Qt::LeftButton); },
        [&] { QTest::keyClick(&window, Qt::Key_Escape); },
        [&] { window.close(); },
    };
    int count = 0;
    for (const std::function<void()>& cancel : ways) {
        window.Start();
        window.SetText("Page 1 of 4 & more"_q);
        window.SetProgress(1, 4);
        EXPECT_EQ(std::make_pair(bar->value(), bar->maximum()), std::make_pair(1, 4));
        QTest::keyClick(&window, Qt::Key_Return);
        EXPECT_FALSE(window.WasCancelled());
        EXPECT_EQ(depth, 1);
        cancel();
        cancel();
        EXPECT_TRUE(window.WasCancelled());
        EXPECT_EQ(cancelled.count(), ++count);
        EXPECT_TRUE(window.isVisible());
        window.Finish();
        EXPECT_FALSE(window.isVisible());
        EXPECT_EQ(depth, 0);
    }
}

TEST(CollapsibleFrame, OpensByMouseKeyAndMnemonicWithoutBecomingWiderAndShowsItsHeaderByTheMode)
{
    using Frame = GQUICollapsibleFrame;
    const std::tuple<Frame::HeaderWidgetMode, bool, bool> modes[] = {
        {Frame::cShownWhenOpen, true, false},
        {Frame::cShownWhenCollapsed, false, true},
        {Frame::cShownAlways, true, true},
    };
    for (const auto& [mode, isShownOpen, isShownCollapsed] : modes) {
        Frame frame("&Options"_q);
        auto* header = new QLabel("header"_q);
        auto* content = new QLabel("content that is a good deal wider than the header of its frame"_q);
        frame.SetContent(content);
        frame.SetHeaderWidget(header, mode);
        frame.SetCollapsed(true);
        frame.show();
        frame.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
        const int width = frame.sizeHint().width();
        auto* button = frame.findChild<QToolButton*>();
        const QSignalSpy clicks(&frame, &Frame::Clicked);
        const std::function<void()> ways[] = {
            [&] { QTest::mouseClick(button, Qt::LeftButton); },
            [&] { QTest::keyClick(button, Qt::Key_Space); },
            [&] { QTest::keyClick(&frame, Qt::Key_O, Qt::AltModifier); },
        };
        bool isCollapsed = true;
        for (const std::function<void()>& toggle : ways) {
            const int before = clicks.count();
            toggle();
            EXPECT_TRUE(QTest::qWaitFor([&] { return clicks.count() == before + 1; }));
            isCollapsed = !isCollapsed;
            EXPECT_EQ(frame.IsCollapsed(), isCollapsed);
            EXPECT_EQ(content->isVisible(), !isCollapsed);
            EXPECT_EQ(header->isVisible(), isCollapsed ? isShownCollapsed : isShownOpen) << mode;
            EXPECT_EQ(frame.sizeHint().width(), width);
        }
    }
}
