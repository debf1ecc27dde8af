#pragma once

#include "foundation/core/GPathName.h"

// The list, in the plug-in's settings, of the temporary files and folders that the plug-in has made and not
// removed yet. It outlives a crash of the host: the next start sweeps what is still listed.
//
// Each path has its owner beside it, the process that listed it (see ListOwner). Every change goes through
// the settings file's lock and a fresh read of it, so that two hosts at once lose nothing. Where there are no
// settings of the plug-in, or they can't be written, nothing is listed; that is logged. For the main thread;
// never raises.
namespace SmartFileList
{
// Lists a path; gives its number, or 0 when it could not be listed.
int32_t Add(const GPathName& path);

// Puts another path under a number. False, with nothing changed, when the list has no such number any more
// or can't be written.
[[nodiscard]] bool Replace(int32_t number, const GPathName& path);

// Takes a number out of the list, if it is there. Where the settings can't be written now, that comes with
// the next change of the list, and before a sweep. What the number named and is to stay, if anything, is told
// by `kept`: no sweep of a later process removes it, even when the settings can't be written until this one
// ends (KeptMark).
void Remove(int32_t number, const GPathName& kept = {});

// Removes a listed file, or folder with all that it holds, whatever it is. Failures are ignored.
void RemoveItem(const GPathName& path);

// Removes a temporary file or folder of this process's, placed job options included. What can't be removed,
// such as a file that another program has open, is tried again by this process's next sweep, unless it has
// changed by then. It needs no place in the list for that: a list that keeps what nobody can remove would
// grow, and might lead a later process to a file that has come by the name meanwhile.
void RemoveOrRetry(const GPathName& path);

// Removes what is listed, and empties the list. For the plug-in's start and end, when this process has no
// temporary file in use.
//
// The list is taken as hostile. What a path names is removed only when it lies in the temporary folder, with
// no link among the folders between, or is a placed job options file; another path is taken from the list and
// logged. What another living process lists is left, in the list too. The numbers begin anew after the
// highest that is left.
void Sweep();
}  // namespace SmartFileList
