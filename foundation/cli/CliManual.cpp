#include "foundation/cli/CliHelp.h"
#include "foundation/cli/CliText.h"
#include "foundation/cli/CliVersion.h"

#include <QStringList>

namespace
{
// Text as man takes it: no character of it is an instruction.
QString Escape(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\e"))
        .replace(QLatin1Char('-'), QLatin1String("\\-"))
        .replace(QChar(QChar::Nbsp), QLatin1String("\\ "))
        .replace(QLatin1Char('\''), QLatin1String("\\(aq"));
    QStringList lines = escaped.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        if (line.startsWith(QLatin1Char('.')))
            line.prepend(QLatin1String("\\&"));
    }
    return lines.join(QLatin1Char('\n'));
}

QString Escape(const char* text)
{
    return Escape(QString::fromUtf8(text));
}

QString MakeParagraphs(const char* help)
{
    QString text;
    for (const CliText::Paragraph& paragraph : CliText::Split(help)) {
        text += paragraph.isAsItStands ? QStringLiteral(".PP\n.nf\n%1\n.fi\n").arg(Escape(paragraph.text))
                                       : QStringLiteral(".PP\n%1\n").arg(Escape(paragraph.text));
    }
    return text;
}

QString MakeItem(const QString& name, const QString& help)
{
    return QStringLiteral(".TP\n.B %1\n%2\n").arg(Escape(name), Escape(help));
}

QString MakeCommand(const CliCommand& command)
{
    QString text = MakeParagraphs(command.help);
    for (const CliArgument& argument : command.arguments)
        text += MakeItem(QString::fromUtf8(argument.name), QString::fromUtf8(argument.help));
    for (const CliOption& option : command.options)
        text += MakeItem(CliText::GetOption(option), QString::fromUtf8(option.help));
    for (const CliExample& example : command.examples)
        text += QStringLiteral(".PP\nExample: %2\n.PP\n.RS\n.nf\n%1\n.fi\n.RE\n")
                    .arg(Escape(example.call), Escape(example.help));
    return text;
}

QString MakeCommands(const CliProgram& program)
{
    const CliCommand& first = program.commands.front();
    if (*first.name == '\0')
        return QStringLiteral(".SH DESCRIPTION\n") + MakeCommand(first);
    QString text =
        QStringLiteral(".SH DESCRIPTION\n") + MakeParagraphs(program.help) + QStringLiteral(".SH COMMANDS\n");
    for (const CliCommand& command : program.commands)
        text += QStringLiteral(".SS %1\n%2.\n")
                    .arg(Escape(CliText::GetCall(program, command)), Escape(command.summary)) +
                MakeCommand(command);
    return text;
}
}  // namespace

QString CliHelp::GetManual(const CliProgram& program)
{
    const QString name = Escape(program.name);
    const CliCommand& first = program.commands.front();
    const QString call =
        *first.name == '\0' ? Escape(CliText::GetCall(program, first)) : name + QLatin1String(" COMMAND ...");
    QString text = QStringLiteral(".TH %1 1 \"\" \"%1 %2\"\n.SH NAME\n%1 \\- %3\n.SH SYNOPSIS\n%4\n")
                       .arg(name, QString::fromUtf8(cCliVersion), Escape(program.summary), call);
    text += MakeCommands(program);
    text += QStringLiteral(".SH MORE OPTIONS\n") +
            MakeItem(QStringLiteral("--help"), QStringLiteral("print help, of the program or a command")) +
            MakeItem(QStringLiteral("--version"), QStringLiteral("print the version")) +
            MakeItem(QStringLiteral("--manual"), QStringLiteral("print this page")) +
            MakeItem(QStringLiteral("--completion SHELL"),
                     QStringLiteral("print the script that completes calls in bash, zsh or fish"));
    for (const CliSection& section : program.sections)
        text += QStringLiteral(".SH %1\n%2")
                    .arg(Escape(QString::fromUtf8(section.title).toUpper()), MakeParagraphs(section.help));
    return text;
}
