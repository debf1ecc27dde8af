#include "WindowDriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

WindowDriver::WindowDriver(std::deque<Step> steps) : mSteps(std::move(steps))
{
    QObject::connect(&mTimer, &QTimer::timeout, [this] { LookAtWindows(); });
    mTimer.start(1);
}

WindowDriver::~WindowDriver()
{
    EXPECT_EQ(mSteps.size(), 0U) << "windows that never came";
}

void WindowDriver::LookAtWindows()
{
    const QPointer<QWidget> window = QApplication::activeModalWidget();
    if (window == nullptr || mSeen.contains(window) || !window->isActiveWindow())
        return;
    mSeen.append(window);
    if (mSteps.empty()) {
        ADD_FAILURE() << "a window that nobody expects: " << window->windowTitle().toStdString();
        window->close();
        return;
    }
    // Not within this timer's event: the timer would rest while the step waits for the next window.
    QMetaObject::invokeMethod(
        &mTimer, [step = mSteps.front(), window] { step(*window); }, Qt::QueuedConnection);
    mSteps.pop_front();
}

void WindowDriver::Click(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    Press(key, modifiers);
    Release(key, modifiers);
}

void WindowDriver::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (QWindow* window = QGuiApplication::focusWindow())
        QTest::keyPress(window, key, modifiers);
}

void WindowDriver::Release(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (QWindow* window = QGuiApplication::focusWindow())
        QTest::keyRelease(window, key, modifiers);
}

void WindowDriver::Type(const QString& text)
{
    for (const QChar character : text)
        if (QWindow* window = QGuiApplication::focusWindow())
            QTest::keyClick(window, character.toLatin1());
}

void WindowDriver::ChooseFromMenu(const char* text)
{
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    for (QAction* action : menu->actions())
        if (action->text().section(QLatin1Char('\t'), 0, 0) == QString::fromUtf8(text)) {
            menu->setActiveAction(action);
            QTest::keyClick(menu, Qt::Key_Return);
            return;
        }
    ADD_FAILURE() << "no " << text;
    menu->close();
}

QWidget* FindWithText(const QWidget& window, const char* text)
{
    const QString wanted = QString::fromUtf8(text);
    const auto isWanted = [&](QString shown) { return shown.remove(QLatin1Char('&')) == wanted; };
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>())
        if (isWanted(button->text()))
            return button;
    for (QLabel* label : window.findChildren<QLabel*>())
        if (isWanted(label->text()))
            return label;
    ADD_FAILURE() << "no " << text;
    return nullptr;
}
