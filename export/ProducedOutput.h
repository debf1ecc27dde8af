#pragma once

#include "foundation/core/GPathName.h"

// What a host's command has left where it was told to work. A command that reports success may have done
// nothing, or its work elsewhere; a Hopbox is sent only what can be seen. What is missing goes to the log.
namespace ProducedOutput
{
// Whether the path is a plain file that begins as a PDF does. False when it can't be read.
bool IsPDF(const GPathName& path);

// Whether the path is a folder that holds anything. False when it can't be read.
bool IsFilledFolder(const GPathName& path);
}  // namespace ProducedOutput
