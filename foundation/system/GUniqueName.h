#pragma once

#include "foundation/core/GString.h"

// Random digits and small letters, `length` of them; with five there are 60 million names. Only small
// letters, because some file systems ignore case. Any thread.
GString MakeRandomName(int length);
