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

// Where a component reports what went wrong or what it did. One operation, so that a host can pass on lines
// to a log of its own. May be called from any thread; an implementation guards itself.
class ILogInterface
{
public:
    virtual ~ILogInterface();

    // Takes one line. `source` is the qualified name of the operation that reports, such as
    // "FileHandler::removeFile". Never throws; a line that can't be written is dropped.
    virtual void log(LogLevel level, const QString& source, const QString& message) noexcept = 0;
};
}  // namespace Morvane
