#pragma once

#include "apps/hopboxctl/Command.h"

// "mactype FILE": prints a file's Mac type and creator and the extension that they stand for.
extern const Command cMacTypeCommand;
