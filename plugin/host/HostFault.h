#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <functional>
#include <stdexcept>

// Exceptions that come from a host, although none of its calls may raise one. They go to the log, and the
// plug-in reports a failure.
namespace HostFault
{
// Raised by an object of the host for an operation that the host does not have. Some hosts find that out only
// when they are asked to do it.
class NotSupported : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The text of the exception that is being handled, for use in a catch clause: in English, or the host's own
// text. What the plug-in raises about its host is a text of the translations' context "HostFault". Anything
// that is not a std::exception gets a fixed text.
GString Describe();

// Runs calls whose exceptions must not reach the caller: they go to the log under `source`. The caller can
// tell how far the calls came from what they have set.
void Contain(const char* source, const std::function<void()>& calls) noexcept;

// Gives the count unchanged. Raises if it is below zero or above a million: no host can mean such a count,
// and a loop over it would never end or would use up the memory.
int32_t CheckCount(int32_t count);
}  // namespace HostFault
