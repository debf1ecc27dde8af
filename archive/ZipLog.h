#pragma once

#include "foundation/trace/ILogInterface.h"

namespace Morvane
{
// Where the archive layer reports: a log of the caller, or the process-wide trace if there is none.
class ZipLog
{
public:
    // The log must outlive everything that reports to it. Null for the process-wide trace.
    explicit ZipLog(ILogInterface* log = nullptr) : mLog(log) {}

    // `source` is the qualified name of the operation, such as "ZipHelper::doExtract".
    void error(const char* source, const QString& message) const;
    void debug(const char* source, const QString& message) const;

    // Passes on what another layer reports.
    void log(LogLevel level, const QString& source, const QString& message) const;

private:
    ILogInterface* mLog;
};
}  // namespace Morvane
