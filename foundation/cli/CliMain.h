#pragma once

#include "foundation/cli/CliCall.h"

#include <functional>
#include <optional>

// What each of our programs does with its call before its own work begins: reads it, and answers what it
// answers the same everywhere.
//
// Gives the exit status when the call is dealt with: help, version, manual or completion were printed, or the
// call was wrong, which is then told with its wrong word. Else none, with the call in `call`. The process
// needs an application object of Qt.
std::optional<int> AnswerCli(const CliProgram& program, int argc, char** argv, CliCall& call);

// Tells what is wrong with a call, and gives the exit status of that. For what only the command itself can
// see.
int RefuseCli(const CliProgram& program, const CliCommand* command, const QString& error);
