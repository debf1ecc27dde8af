#pragma once

#include "widgets/GQUIWindow.h"

#include <memory>

class GCUSModalTime;
class QLabel;
class QProgressBar;
class QPushButton;

// Shows the progress of a long task, and lets the user cancel it. The code that runs the task opens and
// closes the window, and must handle events in between; the window never closes by itself.
class GQUIProgressWindow : public GQUIWindow
{
    Q_OBJECT

public:
    explicit GQUIProgressWindow(const QString& title, QWidget* parent = nullptr);
    ~GQUIProgressWindow() override;

    // Opens the window as a modal window and returns at once. An earlier cancel request is forgotten.
    void Start();
    void Finish();

    void SetText(const QString& text);

    // Without a total (0), the window shows only that something is going on.
    void SetProgress(int done, int total);

    // Whether the user cancelled with the button, Escape or the window's close button.
    bool WasCancelled() const { return mWasCancelled; }

    // Called for Escape and the close button: asks once for the end of the task.
    void reject() override;

signals:
    void Cancelled();

private:
    QLabel* mText;
    QProgressBar* mBar;
    QPushButton* mCancel;
    std::unique_ptr<GCUSModalTime> mModalTime;
    bool mWasCancelled = false;
};
