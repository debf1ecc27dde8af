#include "export/dialog/OkButtonMode.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

OkButtonMode::OkButtonMode(QWidget& dialog, QPushButton& button)
    : QObject(&dialog), mDialog(dialog), mButton(button)
{
    // Nothing moves when the button changes its text.
    mButton.setText(tr("Remove"));
    mButton.setMinimumWidth(mButton.sizeHint().width());
    mButton.setText(tr("OK"));
}

bool OkButtonMode::TakePress(const QKeyEvent& event)
{
    if (event.isAutoRepeat() || !IsPress(event))
        return false;
    mScanCode = event.nativeScanCode();
    Set(Mode::cRemove);
    return true;
}

void OkButtonMode::TakeRelease(const QKeyEvent& event)
{
    if (IsRelease(event))
        Set(Mode::cOK);
}

bool OkButtonMode::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && !watched->isWidgetType())
        return false;  // on its way to a widget
    if (watched == &mDialog && event->type() == QEvent::WindowDeactivate) {
        Set(Mode::cOK);
    } else if (ShowsThatAltIsUp(*event)) {
        Set(Mode::cOK);
        return IsClick(watched, *event);  // the user saw "Remove"
    }
    return false;
}

// Whether the event would click the button.
bool OkButtonMode::IsClick(const QObject* watched, const QEvent& event) const
{
    if (event.type() != QEvent::KeyPress)
        return event.type() == QEvent::MouseButtonPress && watched == &mButton;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter || (key == Qt::Key_Space && mButton.hasFocus());
}

void OkButtonMode::Set(Mode mode)
{
    if (mode == mMode)
        return;
    mMode = mode;
    mButton.setDown(false);
    mButton.setText(mode == Mode::cRemove ? tr("Remove") : tr("OK"));
    if (mode == Mode::cRemove)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
    emit Changed();
}

// With Shift down, some desktops call Alt the Meta key, when it goes down or up. Another key of that name
// brings no Alt.
bool OkButtonMode::IsPress(const QKeyEvent& event) const
{
    return event.key() == Qt::Key_Alt || (event.key() == Qt::Key_Meta && mMode == Mode::cOK &&
                                          (QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier));
}

// By whatever name the key goes up.
bool OkButtonMode::IsRelease(const QKeyEvent& event) const
{
    return !event.isAutoRepeat() &&
           (event.key() == Qt::Key_Alt || (mScanCode != 0 && event.nativeScanCode() == mScanCode));
}

// The release may have gone to another program.
bool OkButtonMode::ShowsThatAltIsUp(const QEvent& event) const
{
    switch (event.type()) {
        case QEvent::KeyRelease:
            if (IsRelease(static_cast<const QKeyEvent&>(event)))
                return true;
            [[fallthrough]];
        case QEvent::KeyPress:
            if (static_cast<const QKeyEvent&>(event).key() == Qt::Key_Alt)
                return false;  // its modifiers are those of the moment before
            [[fallthrough]];
        case QEvent::MouseButtonPress:
            return !(static_cast<const QInputEvent&>(event).modifiers() & Qt::AltModifier);
        default:
            return false;
    }
}
