#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdio>

// Terminal functions that differ between the systems.
namespace CliTerminal
{
bool IsTerminal(std::FILE* stream);

// Writes text in UTF-8. False when it could not be written.
[[nodiscard]] bool Write(std::FILE* stream, const QByteArray& text);

// Reads a line from the terminal itself, whatever standard input is; `isShown` says whether the typed text is
// shown. False without a terminal or at its end.
[[nodiscard]] bool ReadLine(const QByteArray& question, bool isShown, QString& line);

// See CliCall.h.
[[nodiscard]] bool GetWords(int argc, char** argv, QStringList& words, QString& wrong);
}  // namespace CliTerminal
