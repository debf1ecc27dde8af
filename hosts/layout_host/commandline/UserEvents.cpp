#include "hosts/layout_host/commandline/UserEvents.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMouseEvent>

namespace
{
void SendMouse(QWidget& widget, QEvent::Type type, const QPoint& position)
{
    const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
    QMouseEvent event(type, position, widget.mapToGlobal(position), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void SendKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             const QString& text = QString())
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(&widget, &release);
}
}  // namespace

// The mark of a check box or radio button is at its left edge, whatever width its layout gave it.
void UserEvents::Click(QAbstractButton& button)
{
    const int mark = button.height() / 2;
    const QPoint position(button.isCheckable() ? qMin(mark, button.width() / 2) : button.width() / 2, mark);
    button.setFocus(Qt::MouseFocusReason);
    SendMouse(button, QEvent::MouseButtonPress, position);
    SendMouse(button, QEvent::MouseButtonRelease, position);
}

void UserEvents::Choose(QComboBox& box, int index)
{
    box.setFocus(Qt::MouseFocusReason);
    SendKey(box, Qt::Key_F4);
    QAbstractItemView& list = *box.view();
    SendKey(list, Qt::Key_Home);
    for (int step = 0; step < index; ++step)
        SendKey(list, Qt::Key_Down);
    SendKey(list, Qt::Key_Return);
}

void UserEvents::TypeOver(QWidget& widget, const QString& text)
{
    widget.setFocus(Qt::MouseFocusReason);
    SendKey(widget, Qt::Key_A, Qt::ControlModifier);
    SendKey(widget, Qt::Key_Delete);
    for (const QChar letter : text)
        SendKey(widget, 0, Qt::NoModifier, letter);
}
