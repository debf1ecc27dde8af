#pragma once

#include "foundation/core/GString.h"

// What a process leaves that is killed in the middle of the system's two-step replacement of a file, in which
// the old file goes to another name first (GDurableFile): nothing under the target's name, the old file as
// TARGET.PROCESS-START-RANDOM.new.old, and the new one, of which nobody was told that it is there, without
// ".old". Any thread.
namespace PReplacedFile
{
// Gives the old file its name back, the latest where there are several. Nothing happens while anything bears
// the target's name. Gives whether something does now. The path is in the system's form.
bool BringBack(const GString& target);
}  // namespace PReplacedFile
