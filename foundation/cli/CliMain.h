#pragma once

#include "foundation/cli/CliCall.h"

#include <functional>
#include <optional>

// What each of our programs does with its call before its own work begins: it reads the call, and answers
// those calls that all programs answer in the same way.
//
// Gives the exit status if the call is finished: help, version, manual or completion were printed, or the
// call was wrong and an error with the wrong word was printed. Otherwise gives none, and `call` holds the
// call. The process needs a Qt application object.
std::optional<int> AnswerCli(const CliProgram& program, int argc, char** argv, CliCall& call);

// Prints what is wrong with a call, and gives the exit status for that. For errors that only the command
// itself can find.
int RefuseCli(const CliProgram& program, const CliCommand* command, const QString& error);
