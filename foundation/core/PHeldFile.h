#pragma once

#include <functional>

// Files that another program has open for a moment, such as a virus scanner or a reader.
namespace PHeldFile
{
// Tries a step. While it fails because somebody has one of its files open, repeats it for about two seconds.
// Gives whether it was done; the system's last error is that of the step.
[[nodiscard]] bool Try(const std::function<bool()>& step);

// Whether the system's last error may go away when the file is closed by whoever has it open.
bool MayPass();
}  // namespace PHeldFile
