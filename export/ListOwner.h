#pragma once

#include "foundation/core/GPathName.h"

// Who lists a temporary file in the plug-in's settings: a process, known by a file beside the settings that
// it owns for as long as it lives (see GOwnedFile). Processes that can't see each other's numbers can tell
// that.
//
// For the main thread; nothing raises. `settings` is the path of the settings file.
namespace ListOwner
{
// The name of this process's file, made when it is missing; empty, with a line in the log, when that can't be
// done: what is listed so is nobody's for others.
GString GetOwnName(const GPathName& settings);

// Whether a living process other than this one owns the file of that name. False for a text that is no such
// name.
bool IsInOtherHands(const GPathName& settings, const GString& name);

// Gives this process's file up, and removes those that nobody owns.
void CleanUp(const GPathName& settings);
}  // namespace ListOwner
