#pragma once

#include <QString>
#include <QStringList>

// The streams of a program at a command line. Texts are written in UTF-8, on a Windows console in the
// console's own way. Not for several threads at once, except PrintError and PrintWarning.
namespace CliConsole
{
// Sets the name that is printed before each error.
void SetName(const QString& name);

// Writes to standard output.
void Print(const QString& text);

// Writes a line "NAME: ..." to standard error, and keeps it for GetErrors or GetWarnings.
void PrintError(const QString& line);
void PrintWarning(const QString& line);
QStringList GetErrors();
QStringList GetWarnings();

// Writes the unchanged text to standard error.
void PrintNote(const QString& text);

// Whether standard output, or standard error, goes to a terminal.
bool IsOutputTerminal();
bool IsErrorTerminal();

// Whether standard input comes from a terminal, so that a person can be asked.
bool IsInputTerminal();

// Whether a terminal on standard output may get bold text and colours: NO_COLOR and TERM=dumb forbid it,
// CLICOLOR_FORCE asks for it everywhere.
bool HasStyle();

// Asks on the terminal, without showing what is typed. False when there is no terminal, or nothing was typed.
[[nodiscard]] bool AskSecret(const QString& question, QString& answer);

// Asks on the terminal and reads a line. False when there is no line.
[[nodiscard]] bool Ask(const QString& question, QString& answer);

// Writes what is still buffered. False when anything that was printed could not be written; the first time, a
// line on standard error says so.
[[nodiscard]] bool Finish();
}  // namespace CliConsole
