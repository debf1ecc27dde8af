#pragma once

#include "foundation/core/GPathName.h"

#include <functional>

class GPrefModule;

// What the lists of temporary files and of results share.
namespace PlugInItems
{
// Changes the plug-in's settings, under their lock and after a fresh read, and has them written. False, with
// a line in the log under the operation's name, when that can't be done. For the main thread; never raises.
[[nodiscard]] bool ChangeSettings(const char* operation, const std::function<void(GPrefModule&)>& change);

// The file of the settings; empty where they are in none.
GPathName GetSettingsFile(const GPrefModule& module);

// Whether the path lies in the temporary folder, and really there: no folder on the way is a link.
bool IsInTemporaryFolder(const GPathName& path);
}  // namespace PlugInItems
