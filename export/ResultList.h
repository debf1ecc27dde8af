#pragma once

#include "foundation/core/GPathName.h"

// The PDFs and packages that stay in the work folder. Nothing removes them, unless the setting
// "General"/"RemoveResultsAfterDays" is above 0. From then on new results are noted in the plug-in's
// settings. When the plug-in starts, it removes results that were noted at least that many days ago by a
// process that has ended (see ListOwner).
//
// For the main thread; never raises.
namespace ResultList
{
// Notes a result that was just made.
void Note(const GPathName& path);

// Removes what is old enough, and forgets what no longer exists. The list can't be trusted: only what is in
// the temporary folder is removed (see PlugInItems), everything else is only forgotten.
void RemoveOld();
}  // namespace ResultList
