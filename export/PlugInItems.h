#pragma once

#include "foundation/core/GPathName.h"

#include <functional>

class GPrefModule;

// What the lists of temporary files and of results have in common.
namespace PlugInItems
{
// Takes the lock of the plug-in's settings, reads them again, changes them and writes them. False, with a
// line in the log under the operation's name, when that can't be done. For the main thread; never raises.
[[nodiscard]] bool ChangeSettings(const char* operation, const std::function<void(GPrefModule&)>& change);

// The file of the settings; empty if they are not in a file.
GPathName GetSettingsFile(const GPrefModule& module);

// Whether the path is really in the temporary folder: no folder between is a link.
bool IsInTemporaryFolder(const GPathName& path);
}  // namespace PlugInItems
