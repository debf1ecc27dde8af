#pragma once

#include "foundation/core/GPathName.h"

// Writes a shortcut that starts a Hopbox application in its folder. The application is the file
// `applicationName` + ".exe" in `folder`, on every system.
//
// On Windows the shortcut is a shell link that goes through the command interpreter, whose window starts
// minimised; COM is brought up for this thread as an apartment. Elsewhere it is a desktop entry that is
// marked as executable; its name should end in ".desktop". A file that is there is replaced.
//
// False when the shortcut can't be written, the system has no command interpreter, or a name can't stand in a
// shortcut. Nothing is reported. Never raises.
[[nodiscard]] bool MakeStartShortcut(const GString& applicationName, const GPathName& folder,
                                     const GPathName& shortcutPath) noexcept;
