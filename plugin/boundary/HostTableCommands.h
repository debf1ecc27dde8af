#pragma once

#include "plugin/boundary/hopbox_host.h"

// The part of a HostTable's functions that make and run commands.
namespace HostTableCommands
{
void AddTo(hopbox_host_table& table);
}
