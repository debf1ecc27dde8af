#pragma once

#include "foundation/core/GResult.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QDialog;
class QMessageBox;

// What a person would choose in the plug-in's dialog.
struct DialogChoices
{
    QString hopbox;                // as the list shows it, or its registry key
    std::optional<QString> pages;  // "All" where nothing is given
    bool includesPackage = false;
    bool opensOptions = false;  // opens the panel of marks and bleeds before OK; what stands in it is used
};

// An alert that was shown.
struct ShownAlert
{
    QString title;
    QString text;
};

// Answers windows in the place of a person while an action runs: chooses in the plug-in's dialog and presses
// OK, reads message boxes and closes them. It knows the dialog by what it shows, and acts on it by mouse and
// keyboard events; whatever can't be chosen there is an error, and the dialog is cancelled.
//
// For the main thread, one at a time.
class DialogDriver : public QObject
{
public:
    explicit DialogDriver(const DialogChoices& choices);
    ~DialogDriver() override;

    // Runs an action that opens windows and returns when it does.
    void Run(const std::function<void()>& action);

    // Closes whatever window is open, as a person who gives up; the error is the reason.
    void GiveUp(const QString& reason);

    // The alerts so far, in their order.
    const QList<ShownAlert>& GetAlerts() const { return mAlerts; }

    // Whether the choices could be made; of several failures the first.
    const GResult& GetResult() const { return mResult; }

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Answer(QDialog& window);
    void CloseAlert(QMessageBox& box);
    void FillIn(QDialog& dialog);
    GResult ChooseHopbox(const QDialog& dialog);
    GResult ChoosePages(const QDialog& dialog);
    GResult ChoosePackage(const QDialog& dialog);
    GResult OpenOptions(const QDialog& dialog);
    GResult PressOK(const QDialog& dialog);
    void Note(const GResult& result);

    DialogChoices mChoices;
    QList<ShownAlert> mAlerts;
    GResult mResult = GResult::Success();
    bool mHasDialog = false;
};
