#include "archive/ZipLog.h"

#include "foundation/trace/GTrace.h"

namespace Morvane
{
void ZipLog::error(const char* source, const QString& message) const
{
    log(LogLevel::Error, QString::fromLatin1(source), message);
}

void ZipLog::debug(const char* source, const QString& message) const
{
    log(LogLevel::Debug, QString::fromLatin1(source), message);
}

void ZipLog::log(LogLevel level, const QString& source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(level, source, message);
    else if (level == LogLevel::Debug)
        GTrace::Debug(source, message);
    else
        GTrace::Error(source, message);
}
}  // namespace Morvane
