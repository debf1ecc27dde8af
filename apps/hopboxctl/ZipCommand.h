#pragma once

#include "apps/hopboxctl/Command.h"

// "zip": lists, extracts and creates archives.
extern const Command cZipCommand;
