#pragma once

#include "foundation/cli/CliProgram.h"

#include <QString>

// The texts that a program tells about itself, made from its description. Each ends with a line feed.
namespace CliHelp
{
enum class Style
{
    cPlain,
    cBold  // headings are bold on a terminal
};

// What the program is for, and its commands with one line for each. For a program without commands: as
// GetCommand.
QString GetProgram(const CliProgram& program, Style style);

// The commands of a group.
QString GetGroup(const CliProgram& program, const QString& group, Style style);

// How to call a command, what it does, its arguments, options and examples.
QString GetCommand(const CliProgram& program, const CliCommand& command, Style style);

// The hint that follows an error in a call.
QString GetHint(const CliProgram& program, const CliCommand* command);

// The page of the manual, for section 1, in the language of man.
QString GetManual(const CliProgram& program);
}  // namespace CliHelp
