#include "hosts/scribus/panels/WindowFrontend.h"

#include "hosts/scribus/panels/FileQuestions.h"
#include "widgets/GQUIProgressWindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>

WindowFrontend::WindowFrontend(QWidget& window) : mWindow(window) {}

WindowFrontend::~WindowFrontend() = default;

// Commands are known by their English names, which the log has too.
QString WindowFrontend::GetTitle(const QString& title)
{
    static const char* const cTitles[] = {QT_TR_NOOP("Export PDF"), QT_TR_NOOP("Export Book to PDF"),
                                          QT_TR_NOOP("Package"), QT_TR_NOOP("Package Book"),
                                          QT_TR_NOOP("Check Fonts")};
    for (const char* known : cTitles) {
        if (title == QLatin1String(known))
            return tr(known);
    }
    return title;
}

// The window comes at once: a command starts another program, which takes longer than the eye. A single step
// has no part that could be shown: the bar is then one that only moves.
void WindowFrontend::BeginCommand(const QString& title, int steps)
{
    mStep = 0;
    mSteps = steps > 1 ? steps : 0;
    mProgress = std::make_unique<GQUIProgressWindow>(GetTitle(title), &mWindow);
    mProgress->SetText(GetTitle(title));
    mProgress->SetProgress(0, mSteps);
    mProgress->Start();
}

void WindowFrontend::BeginStep(const QString& text)
{
    if (!mProgress)
        return;
    mProgress->SetText(text);
    mProgress->SetProgress(mStep++, mSteps);
}

bool WindowFrontend::IsCancelled()
{
    const QScopedValueRollback<bool> handling(mIsHandlingEvents, true);
    QApplication::processEvents(mProgress ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
    return mProgress && mProgress->WasCancelled();
}

void WindowFrontend::EndCommand()
{
    mProgress.reset();
}

int32_t WindowFrontend::ShowAlert(const QString& text, const QString& button1, const QString& button2,
                                  const QString& button3, int32_t defaultButton, int32_t cancelButton)
{
    QMessageBox box(&mWindow);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    int32_t number = 0;
    QList<QAbstractButton*> buttons;
    for (const QString& label : {button1, button2, button3}) {
        ++number;
        QPushButton* button = label.isEmpty() ? nullptr : box.addButton(label, QMessageBox::AcceptRole);
        buttons.append(button);
        if (button != nullptr && number == defaultButton)
            box.setDefaultButton(button);
        if (button != nullptr && number == cancelButton)
            box.setEscapeButton(button);
    }
    box.exec();
    return buttons.indexOf(box.clickedButton()) + 1;
}

// The export waits; nothing is cancelled by a question that is closed, but the export itself.
IHostFrontend::Decision WindowFrontend::AskToGoOn(const QString& documentName, const QStringList& problems)
{
    constexpr int cMostShown = 12;
    QString text = problems.mid(0, cMostShown).join(QLatin1Char('\n'));
    if (problems.size() > cMostShown)
        text += QLatin1Char('\n') + tr("and %1 more").arg(problems.size() - cMostShown);
    QWidget* const parent = mProgress ? static_cast<QWidget*>(mProgress.get()) : &mWindow;
    QMessageBox box(QMessageBox::Warning, documentName,
                    tr("The PDF of \"%1\" will not be as expected.").arg(documentName), QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(text);
    const QPushButton* const goOn = box.addButton(tr("&Export Anyway"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == goOn ? Decision::GoOn : Decision::Cancel;
}

QString WindowFrontend::AskForSavePath(const QString& documentName)
{
    return FileQuestions::AskForDocumentToSave(mWindow, documentName);
}
