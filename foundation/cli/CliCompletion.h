#pragma once

#include "foundation/cli/CliProgram.h"

#include <QString>

// Scripts that complete calls of a program in a shell: commands, options, and the values that follow them.
// The names of values and arguments say what is completed: files for FILE, PATH, ARCHIVE and the like, a
// folder for DIR, and for NAME what the program itself lists with "list --names".
namespace CliCompletion
{
// For "bash", "zsh" or "fish".
QString GetScript(const CliProgram& program, const QString& shell);
}  // namespace CliCompletion
