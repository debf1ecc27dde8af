#pragma once

#include "apps/hopboxctl/Command.h"

#include <optional>

// What the commands about archives have in common at the command line.
namespace ZipOptions
{
// The ways to give a password, for the description of a command.
std::vector<CliOption> GetPasswordOptions();

// What is wrong with these options together; empty when nothing is.
QString FindFault(const CliCall& call);

// The password that the call gives; empty without one. None, with the reason told, when it is not available.
std::optional<QString> GetPassword(const CliCall& call);
}  // namespace ZipOptions
