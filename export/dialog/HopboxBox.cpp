#include "export/dialog/HopboxBox.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>
#include <QScreen>
#include <QStylePainter>
#include <QWindow>

constexpr int cShownCharacters = 30;  // of a Hopbox's text at least, however long the longest is

HopboxBox::HopboxBox(QWidget* parent) : QComboBox(parent), mModel(new HopboxListModel(this))
{
    setModel(mModel);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(cShownCharacters);
    auto* list = new QListView(this);
    list->setUniformItemSizes(true);  // a long list opens at once
    list->setTextElideMode(Qt::ElideMiddle);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setView(list);
}

const HopboxList::Item* HopboxBox::GetCurrentItem() const
{
    const int index = currentIndex();
    return index < 0 ? nullptr : &GetList().GetItems().at(static_cast<size_t>(index));
}

void HopboxBox::showPopup()
{
    const QWindow* handle = window()->windowHandle();
    const QScreen* screen = handle != nullptr ? handle->screen() : QGuiApplication::primaryScreen();
    view()->parentWidget()->setMaximumWidth(std::max(width(), screen->availableSize().width() / 2));
    QComboBox::showPopup();
}

void HopboxBox::keyPressEvent(QKeyEvent* event)
{
    if (!IsSpaceWithinText(*event))
        return QComboBox::keyPressEvent(event);
    view()->setCurrentIndex(mModel->index(currentIndex(), 0));  // the view has none once it was filled anew
    view()->keyboardSearch(QStringLiteral(" "));
    setCurrentIndex(view()->currentIndex().row());
}

// Whether the key is a space within a text that is being typed.
bool HopboxBox::IsSpaceWithinText(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Space)
        return !mLastLetter.hasExpired(QApplication::keyboardInputInterval());
    if (!event.text().isEmpty())
        mLastLetter.start();
    return false;
}

void HopboxBox::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = option.fontMetrics.elidedText(option.currentText, Qt::ElideMiddle,
                                                       field.adjusted(1, 0, -1, 0).width());
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

// For those whose desktop keeps Alt with the mouse for itself.
void HopboxBox::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* remove = menu->addAction(tr("Remove"), this, &HopboxBox::RemoveChosen);
    remove->setEnabled(count() > 0);
    menu->popup(event->globalPos());
}

void HopboxBox::ShowCurrentTip()
{
    setToolTip(currentData(Qt::ToolTipRole).toString());
    setAccessibleDescription(currentData(Qt::AccessibleDescriptionRole).toString());
}
