#pragma once

#include "foundation/trace/ILogInterface.h"

namespace Morvane
{
// Passes lines to Qt's logging under the category "morvane": debug lines as debug messages, which are off
// until a logging rule asks for them ("morvane.debug=true"), errors as warnings, assertions as critical
// messages. Any thread.
class QtLogger : public ILogInterface
{
public:
    void log(LogLevel level, const QString& source, const QString& message) noexcept override;
};
}  // namespace Morvane
