#include "plugin/messages/GCSPUUserMessage.h"
#include "tests/support/Test.h"
#include "tests/support/WindowDriver.h"
#include "widgets/GCUSModal.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>

static const QString cTitle = "Title"_q;
static const QString cText = "<b>Text</b> & more\n    1. Arial"_q;

// A step that presses a button of a box.
static WindowDriver::Step Press(QMessageBox::StandardButton button)
{
    return [button](QWidget& box) { dynamic_cast<QMessageBox&>(box).button(button)->click(); };
}

TEST(GCSPUUserMessage, BoxesHaveTheirIconTextAndButtons)
{
    GCSPUUserMessage message;
    const struct
    {
        std::function<void()> show;
        QMessageBox::Icon icon;
        QMessageBox::StandardButtons buttons;
    } cases[] = {
        {[&] { message.ShowInfoMessage(cTitle, cText); }, QMessageBox::Information, QMessageBox::Ok},
        {[&] { message.ShowErrorMessage(cTitle, cText); }, QMessageBox::Critical, QMessageBox::Ok},
        {[&] { message.ShowErrorMessage(cTitle, cText + ", Arial"_q.repeated(5000)); }, QMessageBox::Critical,
         QMessageBox::Ok},
        {[&] { static_cast<void>(message.ShowWarningMessage(cTitle, cText)); }, QMessageBox::Warning,
         QMessageBox::Ok | QMessageBox::Cancel},
    };
    for (const auto& entry : cases) {
        const WindowDriver driver({[&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            EXPECT_EQ(box.icon(), entry.icon);
            EXPECT_EQ(box.standardButtons(), entry.buttons);
            EXPECT_EQ(box.windowTitle(), cTitle);
            EXPECT_TRUE(box.text().startsWith(cText));
            EXPECT_LT(box.height(), QGuiApplication::primaryScreen()->availableSize().height());
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            box.accept();
        }});
        entry.show();
    }
}

TEST(GCSPUUserMessage, WarningIsTrueForEverythingButOK)
{
    const auto ask = [](const WindowDriver::Step& act) {
        const WindowDriver driver({act});
        return GCSPUUserMessage().ShowWarningMessage(cTitle, cText);
    };
    EXPECT_FALSE(ask(Press(QMessageBox::Ok)));
    EXPECT_TRUE(ask(Press(QMessageBox::Cancel)));
    EXPECT_TRUE(ask([](QWidget&) { WindowDriver::Click(Qt::Key_Escape); }));
    EXPECT_TRUE(ask([](QWidget& box) {
        WindowDriver::Click(Qt::Key_Return);  // does nothing
        EXPECT_TRUE(box.isVisible());
        box.close();
    }));
}

// Held down since before the box opened.
TEST(GCSPUUserMessage, AnEnterThatIsHeldDownClosesNoBox)
{
    const WindowDriver driver({[](QWidget& box) {
        for (QWidget* target : {&box, box.focusWidget()}) {
            QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r"_q, true);
            QApplication::sendEvent(target, &repeated);
            EXPECT_TRUE(box.isVisible());
        }
        WindowDriver::Click(Qt::Key_Return);
        EXPECT_FALSE(box.isVisible());
    }});
    GCSPUUserMessage().ShowInfoMessage(cTitle, cText);
}

TEST(GCSPUUserMessage, ABoxBelongsToTheParentWindowAndToTheModalTimeOfItsDialog)
{
    QWidget window;
    window.show();
    GCUSModal::SetParentWindowProvider([&] { return window.winId(); });
    QStringList hooks;
    GCUSModal::SetHooks([&] { hooks.append("before"_q); }, [&] { hooks.append("after"_q); });
    const auto check = [&](QWidget& box) {
        EXPECT_EQ(box.windowHandle()->transientParent(), window.windowHandle());
        box.close();
    };
    const WindowDriver driver({check, check});
    {
        const GCUSModal::Scope dialog;
        GCSPUUserMessage().ShowErrorMessage(cTitle, cText);
        EXPECT_EQ(hooks.size(), 1);
    }
    GCSPUUserMessage().ShowInfoMessage(cTitle, cText);
    EXPECT_EQ(hooks, "before|after|before|after"_list);
    GCUSModal::SetHooks({}, {});
    GCUSModal::SetParentWindowProvider({});
}
