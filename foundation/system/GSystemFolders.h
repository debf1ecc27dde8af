#pragma once

#include "foundation/core/GPathName.h"

// What the operating system says about its folders and this module. Paths are absolute. A folder need not
// exist unless a comment says so.
namespace GSystemFolders
{
// The value of an environment variable, read again at each call; empty when it is not set.
GString GetEnvironmentText(const char* name);

// This user's application data: $XDG_CONFIG_HOME, else ~/.config; on Windows the roaming folder, which the
// system makes when it is missing.
GPathName GetApplicationData();

// All users' application data: /etc/xdg; on Windows the common folder.
GPathName GetCommonApplicationData();

// The file of the module (plug-in, library or program) that this code was linked into. Raises with
// GErrorCode::cFile when the system does not tell.
GPathName GetModuleFile();

// Makes one folder, for its owner only. False when it can't be made, also because it exists already;
// GetLastSystemError has the reason.
[[nodiscard]] bool MakeFolder(const GPathName& path) noexcept;
}  // namespace GSystemFolders
