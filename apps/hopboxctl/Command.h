#pragma once

#include <QString>
#include <QStringList>

// One command of hopboxctl: its name, what its call looks like, and what runs it.
struct Command
{
    const char* name;
    const char* usage;  // the lines of the usage text, without "hopboxctl"

    // Runs with the arguments behind the command's name; gives the exit status: 0 done, 1 failed with a line
    // on standard error, 2 wrong call (the caller then prints the usage).
    int (*run)(const QStringList& arguments);
};

constexpr int cExitDone = 0;
constexpr int cExitFailed = 1;
constexpr int cExitUsage = 2;

// Writes text to standard output, or one line to standard error, in UTF-8.
void Print(const QString& text);
void PrintError(const QString& line);
