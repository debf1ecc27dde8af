#include "foundation/cli/CliConsole.h"

#include "foundation/cli/CliCall.h"
#include "foundation/cli/CliTerminal.h"

#include <cerrno>
#include <cstring>
#include <mutex>
#include <utility>

namespace
{
struct State
{
    std::mutex lock;
    QString name;
    QStringList errors;
    QStringList warnings;
    bool hasFailed = false;
    bool isFailureTold = false;
    int reason = 0;  // of the failure, an errno
};

State& GetState()
{
    static State state;
    return state;
}

// Where this fails there is no place left to say so.
void WriteError(const QString& text)
{
    static_cast<void>(CliTerminal::Write(stderr, text.toUtf8()));
    std::fflush(stderr);
}

void PrintLine(QStringList State::*list, const QString& mark, const QString& line)
{
    State& state = GetState();
    const std::lock_guard<std::mutex> guard(state.lock);
    (state.*list).append(line);
    WriteError(state.name + QLatin1String(": ") + mark + line + QLatin1Char('\n'));
}
}  // namespace

void CliConsole::SetName(const QString& name)
{
    GetState().name = name;
}

void CliConsole::Print(const QString& text)
{
    State& state = GetState();
    if (CliTerminal::Write(stdout, text.toUtf8()) || state.hasFailed)
        return;
    state.hasFailed = true;
    state.reason = errno;
}

void CliConsole::PrintError(const QString& line)
{
    PrintLine(&State::errors, QString(), line);
}

void CliConsole::PrintWarning(const QString& line)
{
    PrintLine(&State::warnings, QStringLiteral("warning: "), line);
}

QStringList CliConsole::GetErrors()
{
    return GetState().errors;
}

QStringList CliConsole::GetWarnings()
{
    return GetState().warnings;
}

void CliConsole::PrintNote(const QString& text)
{
    WriteError(text);
}

bool CliConsole::IsOutputTerminal()
{
    return CliTerminal::IsTerminal(stdout);
}

bool CliConsole::IsErrorTerminal()
{
    return CliTerminal::IsTerminal(stderr);
}

bool CliConsole::IsInputTerminal()
{
    return CliTerminal::IsTerminal(stdin);
}

bool CliConsole::HasStyle()
{
    if (!qEnvironmentVariableIsEmpty("NO_COLOR"))
        return false;
    if (!qEnvironmentVariableIsEmpty("CLICOLOR_FORCE") && qgetenv("CLICOLOR_FORCE") != "0")
        return true;
    return IsOutputTerminal() && qgetenv("TERM") != "dumb" && qgetenv("CLICOLOR") != "0";
}

bool CliConsole::AskSecret(const QString& question, QString& answer)
{
    return CliTerminal::ReadLine(question.toUtf8(), false, answer) && !answer.isEmpty();
}

bool CliConsole::Ask(const QString& question, QString& answer)
{
    return CliTerminal::ReadLine(question.toUtf8(), true, answer);
}

bool CliConsole::Finish()
{
    State& state = GetState();
    if (std::fflush(stdout) != 0 && !state.hasFailed) {
        state.hasFailed = true;
        state.reason = errno;
    }
    if (!state.hasFailed)
        return true;
    if (!std::exchange(state.isFailureTold, true))
        PrintError(QStringLiteral("The output can't be written: %1.")
                       .arg(QString::fromLocal8Bit(std::strerror(state.reason))));
    return false;
}

bool GetCliWords(int argc, char** argv, QStringList& words, QString& wrong)
{
    return CliTerminal::GetWords(argc, argv, words, wrong);
}
