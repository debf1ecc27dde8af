#include "archive/ZipLog.h"

#include "foundation/trace/GTrace.h"

namespace Morvane
{
void ZipLog::error(const char* source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(LogLevel::Error, QString::fromLatin1(source), message);
    else
        GTrace::Error(QString::fromLatin1(source), message);
}

void ZipLog::debug(const char* source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(LogLevel::Debug, QString::fromLatin1(source), message);
    else
        GTrace::Debug(QString::fromLatin1(source), message);
}
}  // namespace Morvane
