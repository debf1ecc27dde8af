#pragma once

#include "foundation/core/GDict.h"
#include "foundation/core/GString.h"

// A settings document in memory: named groups of keys and values.
using GPrefGroup = GDict<GBuffer, GString>;
using GPrefGroups = GDict<GBuffer, GPrefGroup>;
