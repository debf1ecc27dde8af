#include "widgets/GCUSMessageBox.h"

#include "widgets/GCUSModalTime.h"
#include "widgets/GCUSTranslation.h"
#include "widgets/GQUIEnterOnce.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

#include <algorithm>

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

// Where boxes wrap their texts at most, in pixels.
constexpr int cTextWidth = 500;

// A text that is too high for the screen, such as a long list, is shown in a field of its own: the buttons
// below it would be out of reach otherwise.
void LimitHeight(QMessageBox& box)
{
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (label == nullptr)
        return;
    const QSize most = QGuiApplication::primaryScreen()->availableSize() / 2;
    const int width = std::min(cTextWidth, most.width());
    label->setWordWrap(true);
    if (label->heightForWidth(width) <= most.height())
        return;
    auto* field = new QPlainTextEdit(box.text(), &box);
    field->setReadOnly(true);
    field->setMinimumSize(width, most.height());
    delete box.layout()->replaceWidget(label, field);
    label->hide();
}

int Run(QMessageBox& box)
{
    LimitHeight(box);
    GQUIEnterOnce(box);
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
