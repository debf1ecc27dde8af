#pragma once

#include "apps/hopboxctl/Command.h"

// The commands about Hopboxes. Each is in a file of its own name; Command.h says what they take and give.
extern const Command cCreateCommand;
extern const Command cListCommand;
extern const Command cShowCommand;
extern const Command cCheckCommand;
extern const Command cDoctorCommand;
extern const Command cSetCommand;
extern const Command cRenameCommand;
extern const Command cRemoveCommand;
extern const Command cRestoreCommand;
extern const Command cDeleteCommand;
extern const Command cExportCommand;
extern const Command cImportCommand;
extern const Command cSubmitCommand;
extern const Command cNotifyCommand;
extern const Command cOriginsCommand;
extern const Command cReceiverInstallCommand;
extern const Command cReceiverStatusCommand;
extern const Command cReceiverRemoveCommand;
extern const Command cChannelListCommand;
extern const Command cChannelWatchCommand;
extern const Command cChannelCleanCommand;
