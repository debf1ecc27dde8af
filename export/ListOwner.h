#pragma once

#include "foundation/core/GPathName.h"

// The process that lists a temporary file in the plug-in's settings. It is identified by a file beside the
// settings, which it owns for as long as it lives (see GOwnedFile). This also works for processes that can't
// see each other's numbers.
//
// For the main thread; nothing raises. `settings` is the path of the settings file.
namespace ListOwner
{
// The name of this process's file, which is made if it is missing. If it can't be made, the name is empty,
// with a line in the log: for other processes, what is listed with an empty name has no owner.
GString GetOwnName(const GPathName& settings);

// Whether a living process other than this one owns the file of that name. False for a text that is not such
// a name.
bool IsInOtherHands(const GPathName& settings, const GString& name);

// Gives up this process's file, and removes the files that nobody owns.
void CleanUp(const GPathName& settings);
}  // namespace ListOwner
