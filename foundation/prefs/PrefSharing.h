#pragma once

#include "foundation/core/GString.h"

// The group that holds a mark for each group that is shared: its key is the group's name, its value "true".
namespace PrefSharing
{
const GBuffer& GetGroup();
}
