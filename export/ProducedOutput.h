#pragma once

#include "foundation/core/GPathName.h"

// Checks what a host's command has made at the place that it was given. A command that reports success may
// have done nothing, or may have worked at another place; a Hopbox gets only what is really there. The log
// says what is missing.
namespace ProducedOutput
{
// Whether the path is a plain file that begins like a PDF. False when it can't be read.
bool IsPDF(const GPathName& path);

// Whether the path is a folder that holds anything. False when it can't be read.
bool IsFilledFolder(const GPathName& path);
}  // namespace ProducedOutput
