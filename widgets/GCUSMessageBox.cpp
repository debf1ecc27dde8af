#include "widgets/GCUSMessageBox.h"

#include "widgets/GCUSModalTime.h"
#include "widgets/GCUSTranslation.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

namespace
{
// A box without a default button. Qt chooses one when a box is shown, so it is taken back after that.
class BoxWithoutDefault : public QMessageBox
{
protected:
    void showEvent(QShowEvent* event) override
    {
        QMessageBox::showEvent(event);
        for (QPushButton* button : findChildren<QPushButton*>()) {
            button->setAutoDefault(false);
            button->setDefault(false);
        }
    }
};

void Prepare(QMessageBox& box, const GString& title, const GString& text)
{
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(title);
    box.setText(text);
}

void AddOK(QMessageBox& box)
{
    box.addButton(QMessageBox::Ok)->setText(GCUSTranslation::Translate("GCUSMessageBox", "OK"));
}

void AddCancel(QMessageBox& box)
{
    box.addButton(QMessageBox::Cancel)->setText(GCUSTranslation::Translate("GCUSMessageBox", "Cancel"));
}

// A text that is too high for the screen, such as a long list, gets scroll bars: the buttons below it would
// be out of reach otherwise.
void LimitHeight(QMessageBox& box)
{
    auto* text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    const QSize most = QGuiApplication::primaryScreen()->availableSize() / 2;
    if (text == nullptr || text->sizeHint().height() <= most.height())
        return;
    auto* area = new QScrollArea(&box);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    delete box.layout()->replaceWidget(text, area);
    const int width = text->sizeHint().width() + area->verticalScrollBar()->sizeHint().width();
    area->setWidget(text);
    area->setMinimumSize(std::min(width, most.width()), most.height());
}

int Run(QMessageBox& box)
{
    LimitHeight(box);
    return RunModally(box);
}

void ShowWithOK(QMessageBox::Icon icon, const GString& title, const GString& text)
{
    QMessageBox box;
    Prepare(box, title, text);
    box.setIcon(icon);
    AddOK(box);
    Run(box);
}
}  // namespace

void GCUSMessageBox::ShowInformation(const GString& title, const GString& text)
{
    ShowWithOK(QMessageBox::Information, title, text);
}

void GCUSMessageBox::ShowError(const GString& title, const GString& text)
{
    ShowWithOK(QMessageBox::Critical, title, text);
}

bool GCUSMessageBox::ConfirmWarning(const GString& title, const GString& text)
{
    BoxWithoutDefault box;
    Prepare(box, title, text);
    box.setIcon(QMessageBox::Warning);
    AddOK(box);
    AddCancel(box);
    return Run(box) == QMessageBox::Ok;
}
