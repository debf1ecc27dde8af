#include "plugin/messages/GCSPUUserMessage.h"
#include "widgets/GCUSModal.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>

namespace
{
const QString cTitle = QStringLiteral("Title");
const QString cText = QStringLiteral("<b>Text</b> & more\n    1. Arial");

using Act = std::function<void(QMessageBox&)>;

// Runs something that shows a box, and acts on the box as soon as it is up.
void WithBox(const std::function<void()>& show, const Act& act)
{
    bool wasShown = false;
    QTimer::singleShot(0, qApp, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        wasShown = true;
        act(*box);
    });
    show();
    EXPECT_TRUE(wasShown);
}

Act Click(QMessageBox::StandardButton button)
{
    return [button](QMessageBox& box) { box.button(button)->click(); };
}

Act Press(Qt::Key key)
{
    return [key](QMessageBox& box) {
        QApplication::postEvent(&box, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    };
}

// Presses Return, which does nothing, and closes the box if it is still there.
void PressReturnThenClose(QMessageBox& box)
{
    for (QWidget* target : {static_cast<QWidget*>(&box), box.focusWidget()}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        if (target != nullptr)
            QApplication::sendEvent(target, &press);
    }
    EXPECT_TRUE(box.isVisible());
    box.close();
}
}  // namespace

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
        {[&] { message.ShowWarningMessage(cTitle, cText); }, QMessageBox::Warning,
         QMessageBox::Ok | QMessageBox::Cancel},
    };
    for (const auto& entry : cases) {
        WithBox(entry.show, [&](QMessageBox& box) {
            EXPECT_EQ(box.icon(), entry.icon);
            EXPECT_EQ(box.standardButtons(), entry.buttons);
            EXPECT_EQ(box.windowTitle(), cTitle);
            EXPECT_EQ(box.text(), cText);
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            box.button(QMessageBox::Ok)->click();
        });
    }
}

TEST(GCSPUUserMessage, WarningIsTrueForEverythingButOK)
{
    const struct
    {
        const char* name;
        Act act;
        bool expected;
    } cases[] = {
        {"OK", Click(QMessageBox::Ok), false},   {"Cancel", Click(QMessageBox::Cancel), true},
        {"escape", Press(Qt::Key_Escape), true}, {"close", [](QMessageBox& box) { box.close(); }, true},
        {"return", PressReturnThenClose, true},
    };
    GCSPUUserMessage message;
    for (const auto& entry : cases) {
        bool answer = !entry.expected;
        WithBox([&] { answer = message.ShowWarningMessage(cTitle, cText); }, entry.act);
        EXPECT_EQ(answer, entry.expected) << entry.name;
    }
}

TEST(GCSPUUserMessage, ABoxOverADialogIsPartOfItsModalTime)
{
    QStringList hooks;
    GCUSModal::SetHooks([&] { hooks.append(QStringLiteral("before")); },
                        [&] { hooks.append(QStringLiteral("after")); });
    GCSPUUserMessage message;
    {
        const GCUSModal::Scope dialog;
        WithBox([&] { message.ShowErrorMessage(cTitle, cText); }, Click(QMessageBox::Ok));
        EXPECT_EQ(hooks.size(), 1);
    }
    WithBox([&] { message.ShowInfoMessage(cTitle, cText); }, Click(QMessageBox::Ok));
    EXPECT_EQ(hooks.join(QLatin1Char(' ')), QStringLiteral("before after before after"));
    GCUSModal::SetHooks({}, {});
}

TEST(GCSPUUserMessage, BoxesBelongToTheParentWindow)
{
    QWidget window;
    window.show();
    GCUSModal::SetParentWindowProvider([&] { return window.winId(); });
    GCSPUUserMessage message;
    WithBox([&] { message.ShowErrorMessage(cTitle, cText); },
            [&](QMessageBox& box) {
                EXPECT_EQ(box.windowHandle()->transientParent(), window.windowHandle());
                box.accept();
            });
    GCUSModal::SetParentWindowProvider({});
}
