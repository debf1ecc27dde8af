#pragma once

#include <QString>

namespace Morvane
{
enum class LogLevel
{
    Debug,
    Error,
    Assert
};

// Where a component reports errors and what it did. It has only one operation, so that a host can easily pass
// lines on to its own log. May be called from any thread; an implementation must be safe for that.
class ILogInterface
{
public:
    virtual ~ILogInterface();

    // Takes one line. `source` is the qualified name of the operation that reports, such as
    // "FileHandler::removeFile". Never throws; a line that can't be written is dropped.
    virtual void log(LogLevel level, const QString& source, const QString& message) noexcept = 0;
};
}  // namespace Morvane
