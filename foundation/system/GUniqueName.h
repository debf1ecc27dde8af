#pragma once

#include "foundation/core/GString.h"

// Random digits and small letters, so many of them; five tell apart 60 million names. Small ones only, as a
// file system that takes no notice of case would see fewer. Any thread.
GString MakeRandomName(int length);
