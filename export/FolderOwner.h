#pragma once

#include "foundation/core/GPathName.h"

// Whether there is a folder of that name that is not a link and that belongs to this process's user. On
// Windows the owner is not checked, because the temporary folder is the user's own.
bool IsOwnFolder(const GPathName& path);
