#pragma once

#include "foundation/core/GPathName.h"

// Writes a shortcut that starts a Hopbox application in its folder. The application is the file
// `applicationName` + ".exe" in `folder`, on every system.
//
// On Windows the shortcut is a shell link that uses the command interpreter, whose window starts minimised;
// COM is initialised for this thread as an apartment. On other systems it is a desktop entry that is marked
// as executable; its name should end in ".desktop". An existing file is replaced.
//
// False when the shortcut can't be written, the system has no command interpreter, or a name is not possible
// in a shortcut. Nothing is reported. Never raises.
[[nodiscard]] bool MakeStartShortcut(const GString& applicationName, const GPathName& folder,
                                     const GPathName& shortcutPath) noexcept;
