#include "foundation/trace/QtLogger.h"

#include <QLoggingCategory>

#include <cstdio>
#include <exception>

Q_LOGGING_CATEGORY(morvaneLog, "morvane", QtInfoMsg)

void Morvane::QtLogger::log(LogLevel level, const QString& source, const QString& message) noexcept
{
    try {
        switch (level) {
            case LogLevel::Debug:
                qCDebug(morvaneLog, "%s: %s", qUtf8Printable(source), qUtf8Printable(message));
                break;
            case LogLevel::Error:
                qCWarning(morvaneLog, "%s: %s", qUtf8Printable(source), qUtf8Printable(message));
                break;
            case LogLevel::Assert:
                qCCritical(morvaneLog, "%s: %s", qUtf8Printable(source), qUtf8Printable(message));
                break;
        }
    } catch (const std::exception& error) {
        // A message handler of the host's threw, or memory ran out.
        std::fprintf(stderr, "morvane: a log line was lost: %s\n", error.what());
    }
}
