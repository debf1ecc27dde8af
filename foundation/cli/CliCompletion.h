#pragma once

#include "foundation/cli/CliProgram.h"

#include <QString>

// Scripts that complete calls of a program in a shell: commands, options, and what belongs behind them. The
// names of values and arguments say what that is: FILE, PATH, ARCHIVE and the like are files, DIR is a
// folder, NAME is what the program itself lists with "list --names".
namespace CliCompletion
{
// For "bash", "zsh" or "fish".
QString GetScript(const CliProgram& program, const QString& shell);
}  // namespace CliCompletion
