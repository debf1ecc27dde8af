#pragma once

#include "foundation/core/GPathName.h"

// A mark beside a file or folder of a work folder that is to stay although the plug-in's settings still list
// it as temporary, because they could not be written. The next sweep reads it, and whoever gets the settings
// written takes it away. For the main thread; nothing raises.
namespace KeptMark
{
// Whatever has the name, now or at the next sweep, stays. What can't be done is logged.
void Set(const GPathName& path);

bool IsSet(const GPathName& path);

void Remove(const GPathName& path);
}  // namespace KeptMark
