#pragma once

#include "foundation/trace/ILogInterface.h"

#include <QStringList>

#include <mutex>

// A log that keeps the lines at error level, each as "source|message". For any thread.
class LogRecorder : public Morvane::ILogInterface
{
public:
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        if (level != Morvane::LogLevel::Debug)
            mErrors.append(source + QLatin1Char('|') + message);
    }

    // The lines since the last call.
    QStringList TakeErrors()
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        QStringList errors;
        errors.swap(mErrors);
        return errors;
    }

private:
    std::mutex mMutex;
    QStringList mErrors;
};
