#pragma once

#include "hosts/scribus/runner/IHostFrontend.h"

#include <QCoreApplication>

#include <memory>

class GQUIProgressWindow;

// Shows on behalf of a window what the engine does: a progress window with Cancel for the time of a command,
// and message boxes. While the engine works outside of a command, the window is drawn but takes no input.
class WindowFrontend : public IHostFrontend
{
    Q_DECLARE_TR_FUNCTIONS(WindowFrontend)

public:
    explicit WindowFrontend(QWidget& window);
    ~WindowFrontend() override;

    // Whether the engine is at work, so that nothing may be opened, closed or asked of it now.
    bool IsBusy() const { return mProgress != nullptr || mIsHandlingEvents; }

    void BeginCommand(const QString& title, int steps) override;
    void BeginStep(const QString& text) override;
    bool IsCancelled() override;
    void EndCommand() override;
    int32_t ShowAlert(const QString& text, const QString& button1, const QString& button2,
                      const QString& button3, int32_t defaultButton, int32_t cancelButton) override;
    Decision AskToGoOn(const QString& documentName, const QStringList& problems) override;
    QString AskForSavePath(const QString& documentName) override;

private:
    static QString GetTitle(const QString& title);

    QWidget& mWindow;
    std::unique_ptr<GQUIProgressWindow> mProgress;
    int mStep = 0;
    int mSteps = 0;
    bool mIsHandlingEvents = false;  // from inside the engine
};
