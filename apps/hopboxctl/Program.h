#pragma once

#include "foundation/cli/CliCall.h"

// hopboxctl as a whole.
namespace Program
{
// All commands, each in a file of its own.
const CliProgram& GetDescription();

// Opens the answer to a call, and closes it with the exit status of what ran; gives the status to end with,
// which is another one when the output could not be written.
void BeginAnswer(const CliCall& call);
int FinishAnswer(int status);

// Answers in JSON though the call could not be read.
int FinishJson(int status);
}  // namespace Program
