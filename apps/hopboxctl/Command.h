#pragma once

#include "foundation/cli/CliCall.h"

#include <QJsonValue>
#include <QString>

// One command of hopboxctl: what its call looks like, and what runs it.
struct Command
{
    CliCommand description;  // the option --json is added to each

    // Runs a call that is right by the description; gives the exit status. What it prints goes to standard
    // output; with --json its result does instead, when it has ended.
    int (*run)(const CliCall& call);
};

// Prints text for people; nothing with --json.
void Print(const QString& text);

// Writes out what was printed so far, for a command that goes on. False when that can't be done.
[[nodiscard]] bool FlushOutput();

// Says on standard error what failed, and in the answer of --json.
void PrintError(const QString& line);

// The same for what is worth knowing though nothing failed.
void PrintWarning(const QString& line);

// What a program gets with --json: the command's own part of the answer, what is known of a damaged file, and
// of a registry that can't be read.
void SetResult(const QJsonValue& result);
void SetDamaged(const QJsonValue& damaged);
void SetUnread(const QJsonValue& unread);

// Says that a word of the call is wrong, and gives the exit status of that.
int RefuseCall(const QString& error);

// A text KEY=VALUE in two; false when it has no key or no equal sign.
[[nodiscard]] bool SplitAssignment(const QString& text, QString& key, QString& value);
