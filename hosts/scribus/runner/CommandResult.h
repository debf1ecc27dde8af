#pragma once

#include <QString>

// How a piece of work ended.
struct CommandResult
{
    enum class Outcome
    {
        Succeeded,
        Failed,
        Cancelled  // by the user
    };

    Outcome outcome = Outcome::Failed;
    QString reason;  // of a failure, for the log

    bool HasSucceeded() const { return outcome == Outcome::Succeeded; }

    static CommandResult Success() { return {Outcome::Succeeded, {}}; }
    static CommandResult Cancellation()
    {
        return {Outcome::Cancelled, QStringLiteral("The user cancelled.")};
    }
    static CommandResult Failure(const QString& reason) { return {Outcome::Failed, reason}; }
};
