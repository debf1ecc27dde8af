#pragma once

#include "apps/hopboxctl/ErrorPrinter.h"

#include <QElapsedTimer>

// What the commands about archives show.

// A name as it can be shown: an archive does not get to send a terminal commands.
QString makePrintable(QString name);

// Shows each failure as a line, with nothing in it that a name could do to the terminal.
class ZipErrorPrinter : public ErrorPrinter
{
public:
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        ErrorPrinter::log(level, source, makePrintable(message));
    }
};

// A line on standard error that fills up, with the rate, written over as it goes. Says nothing where nobody
// would see it.
class ProgressBar
{
public:
    ProgressBar();
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    // Bytes. False when the user wants to stop: Ctrl-C.
    [[nodiscard]] bool show(qint64 done, qint64 total);

    // Leaves the line as it is, for something else to be said below it.
    void leave();

private:
    const bool mIsSeen;
    QElapsedTimer mClock;
    int mPercent = -1;
};
