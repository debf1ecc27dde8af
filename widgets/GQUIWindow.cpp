#include "widgets/GQUIWindow.h"

#include "widgets/GCUSModalTime.h"

#include <QAbstractButton>

GQUIWindow::GQUIWindow(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags)
{
    if (flags == Qt::WindowFlags())
        setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

// In dark colours some styles draw the frames of check boxes darker than the window: only a lighter field
// tells then where they are.
static void BrightenIndicators(QWidget& window)
{
    const QColor ground = window.palette().color(QPalette::Window);
    if (ground.lightness() >= 128)
        return;
    const QColor text = window.palette().color(QPalette::WindowText);
    // About three times as bright as the ground, and the mark in it as bright again.
    const auto mix = [](int dark, int bright) { return (13 * dark + 7 * bright) / 20; };
    const QColor field(mix(ground.red(), text.red()), mix(ground.green(), text.green()),
                       mix(ground.blue(), text.blue()));
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        QPalette palette = button->palette();
        palette.setColor(QPalette::Base, field);
        button->setPalette(palette);
    }
}

void GQUIWindow::showEvent(QShowEvent* event)
{
    BrightenIndicators(*this);
    QDialog::showEvent(event);
}

int GQUIWindow::exec()
{
    const GCUSModalTime modal(*this);
    return QDialog::exec();
}
