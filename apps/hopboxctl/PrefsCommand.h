#pragma once

#include "apps/hopboxctl/Command.h"

// "prefs FILE": prints a settings file, or gets or sets one value of it.
extern const Command cPrefsCommand;
