#pragma once

#include <QPointer>
#include <QTimer>
#include <QVector>
#include <QWidget>

#include <deque>
#include <functional>

// The user's hands. While one lives, each window that becomes modal is given to the next step, in order, once
// it is active; a window without a step fails the test and is closed. All steps must have run by the end.
// Needs a QApplication.
class WindowDriver
{
public:
    using Step = std::function<void(QWidget& window)>;

    explicit WindowDriver(std::deque<Step> steps);
    ~WindowDriver();
    WindowDriver(const WindowDriver&) = delete;
    WindowDriver& operator=(const WindowDriver&) = delete;

    // Presses and releases a key, or one of the two, as the window system would: it goes to the widget that
    // has the focus, or to an open list.
    static void Click(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void Release(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void Type(const QString& text);

    // Triggers an entry of the open menu, which closes it.
    static void ChooseFromMenu(const char* text);

private:
    void LookAtWindows();

    std::deque<Step> mSteps;
    QVector<QPointer<QWidget>> mSeen;
    QTimer mTimer;
};

// The child of a window that has the text, '&' left out; fails the test when there is none.
QWidget* FindWithText(const QWidget& window, const char* text);
