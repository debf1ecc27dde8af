#include "foundation/cli/CliMain.h"

#include "foundation/cli/CliCompletion.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliHelp.h"
#include "foundation/cli/CliVersion.h"

namespace
{
QString GetHelp(const CliProgram& program, const CliCall& call)
{
    const CliHelp::Style style = CliConsole::HasStyle() ? CliHelp::Style::cBold : CliHelp::Style::cPlain;
    if (call.GetCommand() != nullptr && *call.GetCommand()->name != '\0')
        return CliHelp::GetCommand(program, *call.GetCommand(), style);
    return call.GetTopic().isEmpty() ? CliHelp::GetProgram(program, style)
                                     : CliHelp::GetGroup(program, call.GetTopic(), style);
}

int PrintAnswer(const QString& text)
{
    CliConsole::Print(text);
    return CliConsole::Finish() ? cCliDone : cCliFailed;
}
}  // namespace

std::optional<int> AnswerCli(const CliProgram& program, int argc, char** argv, CliCall& call)
{
    CliConsole::SetName(QString::fromUtf8(program.name));
    QStringList words;
    QString wrong;
    if (!GetCliWords(argc, argv, words, wrong))
        return RefuseCli(program, nullptr,
                         QStringLiteral("\"%1\" is no text in this system's encoding.").arg(wrong));
    call = CliCall::Read(program, words);
    switch (call.GetKind()) {
        case CliCall::Kind::cRun:
            return {};
        case CliCall::Kind::cHelp:
            return PrintAnswer(GetHelp(program, call));
        case CliCall::Kind::cVersion:
            return PrintAnswer(QStringLiteral("%1 %2\n").arg(QString::fromUtf8(program.name),
                                                             QString::fromUtf8(cCliVersion)));
        case CliCall::Kind::cManual:
            return PrintAnswer(CliHelp::GetManual(program));
        case CliCall::Kind::cCompletion:
            return PrintAnswer(CliCompletion::GetScript(program, call.GetTopic()));
        case CliCall::Kind::cWrong:
            break;
    }
    return RefuseCli(program, call.GetCommand(), call.GetError());
}

int RefuseCli(const CliProgram& program, const CliCommand* command, const QString& error)
{
    CliConsole::PrintError(error);
    CliConsole::PrintNote(CliHelp::GetHint(program, command));
    return cCliWrongCall;
}
