#pragma once

#include "foundation/core/GString.h"

// One system replaces a file in two steps: first the old file gets another name (GDurableFile). A process
// killed between the two steps leaves:
// - nothing under the target's name;
// - the old file, under the new file's temporary name (PTemporaryName) with ".old" added;
// - the new file, but nobody was told that it is there.
// Any thread.
namespace PReplacedFile
{
enum class Found
{
    cNothing,  // neither the target nor an old file
    cTarget,   // something has the target's name, still or again, or the system can't tell
    cHeld      // an old file that can't be brought back: the target does not count as missing; don't make it
               // again
};

// Gives the old file its name back; if there are several, the latest. If somebody has it open, waits as
// PHeldFile does. If anything has the target's name, nothing happens. For cNothing and cHeld the system's
// last error says why. The path is in the system's form.
[[nodiscard]] Found BringBack(const GString& target);
}  // namespace PReplacedFile
