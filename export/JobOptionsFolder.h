#pragma once

#include "foundation/core/GPathName.h"

// The folder of the host's PDF settings, and the plug-in's files there.
namespace JobOptionsFolder
{
// The name of a placed job options file; if it is taken, "_" and five random characters are added before its
// extension.
extern const GString cPlacedName;

// The path of the folder, computed once per process. The folder need not exist.
const GPathName& GetPath();

// Whether the path is in the folder and has a name that a placed file can have.
bool IsPlacedFile(const GPathName& path);

// Removes a placed file, and also what an interrupted copy has left beside it. Never raises.
void RemovePlacedFile(const GPathName& path);
}  // namespace JobOptionsFolder
