#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// Numbers and names that the plug-in and the Hopbox processes have agreed on.
namespace HopboxMessage
{
constexpr int32_t cSubmitJob = 145;  // with the text of a job ticket in UTF-8
constexpr int32_t cNotify = 146;     // with nothing

// The image name of a Hopbox process, the same on every system.
extern const GString cProcessImage;
}  // namespace HopboxMessage
