#include "hosts/layout_host/commandline/DialogDriver.h"

#include "hosts/layout_host/commandline/UserEvents.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace
{
// The widgets of a kind that a person sees, in the order in which the dialog was built.
template <class Widget>
QList<Widget*> FindShown(const QWidget& parent)
{
    QList<Widget*> shown;
    for (Widget* widget : parent.findChildren<Widget*>()) {
        if (widget->isVisible())
            shown.append(widget);
    }
    return shown;
}

template <class Widget>
Widget* FindFirst(const QWidget& parent)
{
    const QList<Widget*> shown = FindShown<Widget>(parent);
    return shown.isEmpty() ? nullptr : shown.constFirst();
}

// By the key or the name, as everywhere, or else by the text in the list.
int FindEntry(const QComboBox& box, const QString& name)
{
    constexpr int cNameRole = Qt::UserRole + 1;  // of the plug-in's list
    for (const int role : {static_cast<int>(Qt::UserRole), cNameRole, static_cast<int>(Qt::DisplayRole)}) {
        const int found = box.findData(name, role, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (found >= 0)
            return found;
    }
    return -1;
}

QStringList GetEntries(const QComboBox& box)
{
    QStringList entries;
    for (int index = 0; index < box.count(); ++index)
        entries.append(QLatin1Char('"') + box.itemText(index) + QLatin1Char('"'));
    return entries;
}

// The button that unfolds the panel of options. The driver knows the widget by the name of its class alone.
QAbstractButton* FindOptionsButton(const QWidget& dialog)
{
    for (const QWidget* widget : FindShown<QWidget>(dialog)) {
        if (widget->inherits("GQUICollapsibleFrame"))
            return FindFirst<QAbstractButton>(*widget);
    }
    return nullptr;
}

GResult Check(bool isTaken, const QString& otherwise)
{
    return isTaken ? GResult::Success() : GResult::Failure(otherwise);
}
}  // namespace

DialogDriver::DialogDriver(const DialogChoices& choices) : mChoices(choices) {}

DialogDriver::~DialogDriver() = default;

void DialogDriver::Run(const std::function<void()>& action)
{
    qApp->installEventFilter(this);
    action();
    qApp->removeEventFilter(this);
    if (!mHasDialog && mAlerts.isEmpty())
        Note(GResult::Failure(QStringLiteral("The plug-in opened no dialog.")));
}

void DialogDriver::GiveUp(const QString& reason)
{
    Note(GResult::Failure(reason));
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<QDialog*>(widget); window != nullptr && window->isVisible())
            window->reject();
    }
}

// A window is answered from its own modal loop, which begins after it was shown.
bool DialogDriver::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        if (auto* window = qobject_cast<QDialog*>(object); window != nullptr && window->isWindow())
            QTimer::singleShot(0, window, [this, window] { Answer(*window); });
    }
    return QObject::eventFilter(object, event);
}

void DialogDriver::Answer(QDialog& window)
{
    if (auto* box = qobject_cast<QMessageBox*>(&window))
        CloseAlert(*box);
    else if (FindFirst<QDialogButtonBox>(window) != nullptr)
        FillIn(window);
}

void DialogDriver::CloseAlert(QMessageBox& box)
{
    mAlerts.append({box.windowTitle(), box.text()});
    const QList<QAbstractButton*> buttons = box.buttons();
    if (buttons.isEmpty())
        box.reject();
    else
        UserEvents::Click(box.defaultButton() != nullptr ? *box.defaultButton() : *buttons.constFirst());
}

// The panel of options comes last: unfolded, it has boxes of its own.
void DialogDriver::FillIn(QDialog& dialog)
{
    mHasDialog = true;
    const QPointer<QDialog> open = &dialog;
    const GResult done = mResult.Then([&] { return ChooseHopbox(dialog); })
                             .Then([&] { return ChoosePages(dialog); })
                             .Then([&] { return ChoosePackage(dialog); })
                             .Then([&] { return OpenOptions(dialog); })
                             .Then([&] { return PressOK(dialog); });
    Note(done);
    if (!done.HasSucceeded() && open && open->isVisible())
        open->reject();
}

GResult DialogDriver::ChooseHopbox(const QDialog& dialog)
{
    QComboBox* list = FindFirst<QComboBox>(dialog);
    if (list == nullptr)
        return GResult::Failure(QStringLiteral("The dialog has no list of Hopboxes."));
    if (list->count() == 0)
        return GResult::Failure(QStringLiteral("The dialog lists no Hopbox."));
    const int index = FindEntry(*list, mChoices.hopbox);
    if (index < 0)
        return GResult::Failure(QStringLiteral("The dialog lists no Hopbox \"%1\", but %2.")
                                    .arg(mChoices.hopbox, GetEntries(*list).join(QStringLiteral(", "))));
    UserEvents::Choose(*list, index);
    return Check(list->currentIndex() == index,
                 QStringLiteral("The dialog does not take the Hopbox \"%1\".").arg(mChoices.hopbox));
}

GResult DialogDriver::ChoosePages(const QDialog& dialog)
{
    if (!mChoices.pages)
        return GResult::Success();
    const QList<QRadioButton*> buttons = FindShown<QRadioButton>(dialog);
    if (buttons.size() < 2 || !buttons.at(1)->isEnabled())
        return GResult::Failure(QStringLiteral("The dialog offers no page range."));
    UserEvents::Click(*buttons.at(1));
    for (QLineEdit* edit : FindShown<QLineEdit>(dialog)) {
        if (!edit->isEnabled() || qobject_cast<QComboBox*>(edit->parentWidget()) != nullptr)
            continue;
        UserEvents::TypeOver(*edit, *mChoices.pages);
        return Check(edit->text() == *mChoices.pages,
                     QStringLiteral("The dialog does not take the page range \"%1\".").arg(*mChoices.pages));
    }
    return GResult::Failure(QStringLiteral("The dialog takes no page range."));
}

GResult DialogDriver::ChoosePackage(const QDialog& dialog)
{
    QCheckBox* box = FindFirst<QCheckBox>(dialog);
    if (box == nullptr || !box->isEnabled())
        return Check(!mChoices.includesPackage,
                     QStringLiteral("The dialog offers no file package for \"%1\".").arg(mChoices.hopbox));
    if (box->isChecked() != mChoices.includesPackage)
        UserEvents::Click(*box);
    return Check(box->isChecked() == mChoices.includesPackage,
                 QStringLiteral("The dialog does not let the file package be chosen."));
}

GResult DialogDriver::OpenOptions(const QDialog& dialog)
{
    if (!mChoices.opensOptions)
        return GResult::Success();
    QAbstractButton* button = FindOptionsButton(dialog);
    if (button == nullptr)
        return GResult::Failure(
            QStringLiteral("The dialog offers no options for \"%1\".").arg(mChoices.hopbox));
    UserEvents::Click(*button);
    return GResult::Success();
}

// The export runs before the click returns.
GResult DialogDriver::PressOK(const QDialog& dialog)
{
    QPushButton* button = FindFirst<QDialogButtonBox>(dialog)->button(QDialogButtonBox::Ok);
    if (button == nullptr || !button->isEnabled())
        return GResult::Failure(QStringLiteral("The dialog does not let OK be pressed."));
    UserEvents::Click(*button);
    return GResult::Success();
}

void DialogDriver::Note(const GResult& result)
{
    mResult = mResult.Then([&] { return result; });
}
