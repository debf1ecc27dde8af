#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <functional>
#include <stdexcept>

// What a host raises although no call of its may: it goes to the log and becomes a failure of the plug-in's.
namespace HostFault
{
// Raised by an object of the host's for an operation that the host turns out not to have: not every host can
// tell before it is asked to do it.
class NotSupported : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The words of what is being handled, for use in a catch clause: English, or the host's own. What the plug-in
// raises about its host is a text of the translations' context "HostFault". What is
// thrown and is no std::exception gets a fixed text.
GString Describe();

// Runs calls that must not fail by raising. What they raise goes to the log under `source`; what the calls
// have set by then tells the caller how far they came.
void Contain(const char* source, const std::function<void()>& calls) noexcept;

// The count as it is; raises for one that no host can mean: below zero, or above a million. Whoever goes
// through what was counted would not come to an end, or to the end of the memory.
int32_t CheckCount(int32_t count);
}  // namespace HostFault
