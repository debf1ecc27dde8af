#pragma once

#include "widgets/GQUIWindow.h"

#include <memory>

class GCUSModalTime;
class QLabel;
class QProgressBar;
class QPushButton;

// Shows how far a long task has come, and takes the user's wish to cancel it. Whoever runs the task opens and
// closes the window, and gives the events their turn in between; the window never closes by itself.
class GQUIProgressWindow : public GQUIWindow
{
    Q_OBJECT

public:
    explicit GQUIProgressWindow(const QString& title, QWidget* parent = nullptr);
    ~GQUIProgressWindow() override;

    // Opens the window, modal, and returns at once. An earlier wish to cancel is forgotten.
    void Start();
    void Finish();

    void SetText(const QString& text);

    // Without a total (0), only that something goes on.
    void SetProgress(int done, int total);

    // By the button, Escape or the window's close button.
    bool WasCancelled() const { return mWasCancelled; }

    // What Escape and the close button do: asks for the end of the task, once.
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
