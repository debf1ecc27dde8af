#pragma once

#include <QString>

// A word of a command line, as the shell of the system takes it: on Windows its command prompt.
namespace ShellWord
{
QString Quote(const QString& word);
}
