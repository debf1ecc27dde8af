#pragma once

#include <functional>

// Files that somebody has open for a moment: whoever looks through new files, a reader.
namespace PHeldFile
{
// Takes a step, again and again for about two seconds while it fails because somebody has a file of it open.
// Gives whether it was done; the system's last error is that of the step.
[[nodiscard]] bool Try(const std::function<bool()>& step);

// Whether the system's last error may pass when whoever has the file open closes it.
bool MayPass();
}  // namespace PHeldFile
