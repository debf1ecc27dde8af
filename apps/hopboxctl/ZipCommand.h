#pragma once

#include "apps/hopboxctl/Command.h"

// What hopboxctl does with zip archives.
extern const Command cZipListCommand;
extern const Command cZipTestCommand;
extern const Command cZipExtractCommand;
extern const Command cZipCreateCommand;
extern const Command cZipAddCommand;
