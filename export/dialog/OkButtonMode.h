#pragma once

#include <QObject>

class QKeyEvent;
class QPushButton;

// What the OK button of a dialog does: OK, or Remove while the Alt key is down. The button shows it, and what
// it shows at the moment of a click is what happens: a click that was begun in the other mode is dropped.
//
// The dialog passes its key events on. What else tells that Alt is up (an event without it, the loss of the
// keyboard) is noticed here, even in an open list or another window of the process. For the main thread.
class OkButtonMode : public QObject
{
    Q_OBJECT

public:
    enum class Mode
    {
        cOK = 0,
        cRemove = 1
    };

    OkButtonMode(QWidget& dialog, QPushButton& button);

    Mode Get() const { return mMode; }

    // Whether the event is the press of Alt, which turns the mode to Remove.
    [[nodiscard]] bool TakePress(const QKeyEvent& event);

    // A release of Alt turns the mode to OK.
    void TakeRelease(const QKeyEvent& event);

signals:
    void Changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Set(Mode mode);
    bool IsPress(const QKeyEvent& event) const;
    bool IsRelease(const QKeyEvent& event) const;
    bool IsClick(const QObject* watched, const QEvent& event) const;
    bool ShowsThatAltIsUp(const QEvent& event) const;

    QWidget& mDialog;
    QPushButton& mButton;
    Mode mMode = Mode::cOK;
    quint32 mScanCode = 0;  // of the key that went down
};
