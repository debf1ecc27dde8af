#pragma once

#include "foundation/core/GPathName.h"

// A mark beside a file or folder of a work folder that must stay. It is needed when the plug-in's settings
// still list the file or folder as temporary because the settings could not be written. The next sweep reads
// the mark; it is removed when the settings have been written. For the main thread; nothing raises.
namespace KeptMark
{
// What has the name, now or at the next sweep, stays. A failure is logged.
void Set(const GPathName& path);

bool IsSet(const GPathName& path);

void Remove(const GPathName& path);
}  // namespace KeptMark
