#pragma once

#include "foundation/core/GPathName.h"

// The folder of the host's PDF settings, and the plug-in's files there.
namespace JobOptionsFolder
{
// The name of a placed job options file; where it is taken, "_" and five random characters go before its
// extension.
extern const GString cPlacedName;

// Computed once per process. The folder need not be there.
const GPathName& GetPath();

// Whether the path lies in the folder and has a name that a placed file can have.
bool IsPlacedFile(const GPathName& path);

// Removes a placed file, and what a copying that was cut short has left beside it. Never raises.
void RemovePlacedFile(const GPathName& path);
}  // namespace JobOptionsFolder
