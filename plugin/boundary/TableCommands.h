#pragma once

#include "plugin/host/ICommand.h"
#include "plugin/host/IPackage.h"

class TableHost;

// Commands over a host's table.
namespace TableCommands
{
// Empty for a class of which the host has no command.
HostPtr<ICommand> Make(const TableHost& host, ClassID command);

// Runs a command that Make has handed out.
ErrorCode Run(const ICommand& command);

HostPtr<IObjectModel> MakeObjectModel(const TableHost& host);
}  // namespace TableCommands
