#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

// What the engine shows and asks while it works, implemented by whoever drives it: a window, or a command
// line. Every call comes on the main thread.
class IHostFrontend
{
public:
    virtual ~IHostFrontend();

    // A command begins: its title, such as "Export PDF", and the number of steps it will report, at least 1.
    // Commands do not nest.
    virtual void BeginCommand(const QString& title, int steps) = 0;

    // One more step begins, with a text for the user.
    virtual void BeginStep(const QString& text) = 0;

    // Called about twenty times a second while a command waits for another program: the place to handle
    // events. True when the user has cancelled; the engine then stops the program and fails the command.
    virtual bool IsCancelled() = 0;

    // The command is over, however it ended. Called exactly once for each BeginCommand.
    virtual void EndCommand() = 0;

    // Shows an alert and gives the number, from 1 to 3, of the button that closed it; a button without a text
    // is not shown.
    virtual int32_t ShowAlert(const QString& text, const QString& button1, const QString& button2,
                              const QString& button3, int32_t defaultButton, int32_t cancelButton) = 0;

    enum class Decision
    {
        GoOn,
        Cancel,  // the user does not want it
        Refuse   // nobody is there to be asked
    };

    // Asks whether an export is to go on although its result will not be what people expect: a sentence for
    // each problem of the document.
    virtual Decision AskToGoOn(const QString& documentName, const QStringList& problems) = 0;

    // Asks for the file to save an untitled document to; empty when the user cancels.
    virtual QString AskForSavePath(const QString& documentName) = 0;
};
