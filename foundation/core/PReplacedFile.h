#pragma once

#include "foundation/core/GString.h"

// One system replaces a file in two steps: the old file goes to another name first (GDurableFile). A process
// killed between the two steps leaves:
// - nothing under the target's name;
// - the old file, under the new one's temporary name (PTemporaryName) with ".old" behind it;
// - the new file, of which nobody was told that it is there.
// Any thread.
namespace PReplacedFile
{
enum class Found
{
    cNothing,  // neither the target nor an old file
    cTarget,   // something bears the target's name, now or again, or it can't be looked at
    cHeld  // an old file, but it can't be brought back: the target is not missing, and not to be made anew
};

// Gives the old file its name back, the latest where there are several, and waits for whoever has it open as
// PHeldFile does. Nothing happens while anything bears the target's name. For cNothing and cHeld the system's
// last error says why. The path is in the system's form.
[[nodiscard]] Found BringBack(const GString& target);
}  // namespace PReplacedFile
