#pragma once

#include "foundation/core/GPathName.h"

// Whether there is a folder of that name, no link, that belongs to this process's user. On Windows, where the
// temporary folder is the user's own, whether there is a folder that is no link.
bool IsOwnFolder(const GPathName& path);
