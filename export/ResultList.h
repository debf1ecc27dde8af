#pragma once

#include "foundation/core/GPathName.h"

// The PDFs and packages that stay in the work folder. Nothing removes them, unless the setting
// "General"/"RemoveResultsAfterDays" is above 0: what is made from then on is noted in the plug-in's
// settings, and the plug-in's start removes what has been noted for that many days by a process that has
// ended (see ListOwner).
//
// For the main thread; never raises.
namespace ResultList
{
// Notes a result that was just made.
void Note(const GPathName& path);

// Removes what is old enough, and forgets what is gone. The list is taken as hostile: only what lies in the
// temporary folder is removed (see PlugInItems), anything else is only forgotten.
void RemoveOld();
}  // namespace ResultList
