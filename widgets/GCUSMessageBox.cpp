#include "widgets/GCUSMessageBox.h"

#include "widgets/GCUSModalTime.h"
#include "widgets/GCUSTranslation.h"

#include <QMessageBox>
#include <QPushButton>

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

void ShowWithOK(QMessageBox::Icon icon, const GString& title, const GString& text)
{
    QMessageBox box;
    Prepare(box, title, text);
    box.setIcon(icon);
    AddOK(box);
    RunModally(box);
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
    return RunModally(box) == QMessageBox::Ok;
}
