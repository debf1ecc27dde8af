#include "widgets/GQUIEnterOnce.h"

#include <QDialog>
#include <QKeyEvent>
#include <QPushButton>

namespace
{
class RepeatedEnterFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool isPress = event->type() == QEvent::KeyPress;
        if (!isPress && event->type() != QEvent::KeyRelease)
            return false;
        if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter)
            return false;
        if (!isPress)
            mReleaseTime = key.timestamp();
        return isPress && IsRepeated(key);
    }

private:
    // Some desktops send a release with each repetition, at the same time, and Qt doesn't always see then
    // that it is one. Events that no keyboard sent have no scan code, and any time.
    bool IsRepeated(const QKeyEvent& key) const
    {
        return key.isAutoRepeat() || (key.nativeScanCode() != 0 && key.timestamp() == mReleaseTime);
    }

    ulong mReleaseTime = 0;
};
}  // namespace

void GQUIEnterOnce(QDialog& dialog)
{
    auto* filter = new RepeatedEnterFilter(&dialog);
    dialog.installEventFilter(filter);
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        button->installEventFilter(filter);
}
