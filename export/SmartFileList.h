#pragma once

#include "foundation/core/GPathName.h"

// The list, in the plug-in's settings, of the temporary files and folders that the plug-in has made and not
// removed yet. It survives a crash of the host: the next start removes what is still listed.
//
// The list holds each path with its owner, the process that listed it (see ListOwner). Every change takes the
// lock of the settings file and reads the file again, so that two hosts at once lose nothing. If the plug-in
// has no settings, or they can't be written, nothing is listed; that is logged. For the main thread; never
// raises.
namespace SmartFileList
{
// Lists a path; gives its number, or 0 when it could not be listed.
int32_t Add(const GPathName& path);

// Puts another path under a number. False, with nothing changed, when the list has no such number any more
// or can't be written.
[[nodiscard]] bool Replace(int32_t number, const GPathName& path);

// Removes a number from the list, if it is there. If the settings can't be written now, that is done with the
// next change of the list, and before a sweep. If what the number named must stay, `kept` is its path: no
// sweep of a later process removes it, even if the settings can't be written until this process ends
// (KeptMark).
void Remove(int32_t number, const GPathName& kept = {});

// Removes a listed file or folder, with everything in it. Failures are ignored.
void RemoveItem(const GPathName& path);

// Removes a temporary file or folder of this process, also placed job options. If it can't be removed, for
// example because another program has it open, this process's next sweep tries again, unless it has changed
// by then. It is not kept in the list for that: a list with items that nobody can remove would grow, and a
// later process might remove another file that has got the same name meanwhile.
void RemoveOrRetry(const GPathName& path);

// Removes what is listed, and empties the list. Call it at the plug-in's start and end, when this process
// does not use any temporary file.
//
// The list can't be trusted. What a path names is removed only if it is in the temporary folder, with no link
// among the folders between, or if it is a placed job options file. Any other path is only removed from the
// list and logged. What another living process lists stays, also in the list. New numbers follow the highest
// number that is left.
void Sweep();
}  // namespace SmartFileList
