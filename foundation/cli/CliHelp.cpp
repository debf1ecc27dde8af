#include "foundation/cli/CliHelp.h"

#include "foundation/cli/CliText.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <utility>

namespace
{
using Rows = QVector<std::pair<QString, QString>>;

constexpr int cWidth = 100;      // of a line
constexpr int cWidestName = 30;  // that stands beside its text; a wider one stands above it

QString WrapParagraph(const QString& paragraph, const QString& indent)
{
    QString text;
    QString line = indent;
    for (const QString& word : paragraph.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (line.size() > indent.size() && line.size() + 1 + word.size() > cWidth) {
            text += line + QLatin1Char('\n');
            line = indent;
        }
        line += (line.size() > indent.size() ? QStringLiteral(" ") : QString()) + word;
    }
    return QString(text + line + QLatin1Char('\n')).replace(QChar(QChar::Nbsp), QLatin1Char(' '));
}

QString Wrap(const char* help)
{
    QString text;
    for (const CliText::Paragraph& paragraph : CliText::Split(help)) {
        text += text.isEmpty() ? QString() : QStringLiteral("\n");
        text += paragraph.isAsItStands ? paragraph.text + QLatin1Char('\n')
                                       : WrapParagraph(paragraph.text, QString());
    }
    return text;
}

QString MakeHeading(const char* text, CliHelp::Style style)
{
    const QString heading = QString::fromUtf8(text) + QLatin1Char(':');
    return style == CliHelp::Style::cBold ? QStringLiteral("\x1b[1m%1\x1b[0m\n").arg(heading)
                                          : heading + QLatin1Char('\n');
}

// Names on the left, what they are on the right.
QString MakeTable(const char* heading, const Rows& rows, CliHelp::Style style)
{
    if (rows.isEmpty())
        return {};
    int width = 0;
    for (const auto& row : rows)
        width = row.first.size() > cWidestName ? width : std::max(width, row.first.size());
    const QString indent(width + 4, QLatin1Char(' '));
    QString text = QLatin1Char('\n') + MakeHeading(heading, style);
    for (const auto& row : rows) {
        QString help = WrapParagraph(row.second, indent);
        const QString name = QStringLiteral("  ") + row.first;
        if (row.first.size() > width)
            text += name + QLatin1Char('\n') + help;
        else
            text += name.leftJustified(indent.size()) + help.mid(indent.size());
    }
    return text;
}

Rows GetArguments(const CliCommand& command)
{
    Rows rows;
    for (const CliArgument& argument : command.arguments)
        rows.append({QString::fromUtf8(argument.name), QString::fromUtf8(argument.help)});
    return rows;
}

Rows GetOptions(const CliCommand& command)
{
    Rows rows;
    for (const CliOption& option : command.options)
        rows.append({CliText::GetOption(option), QString::fromUtf8(option.help)});
    rows.append({QStringLiteral("--help"), QStringLiteral("print this help")});
    return rows;
}

QString MakeExamples(const CliCommand& command, CliHelp::Style style)
{
    if (command.examples.empty())
        return {};
    QString text = QLatin1Char('\n') + MakeHeading("examples", style);
    for (const CliExample& example : command.examples)
        text += QStringLiteral("  ") + QString::fromUtf8(example.call) + QLatin1Char('\n') +
                WrapParagraph(QString::fromUtf8(example.help), QStringLiteral("      "));
    return text;
}

QString MakeSections(const CliProgram& program, CliHelp::Style style)
{
    QString text;
    for (const CliSection& section : program.sections)
        text += QLatin1Char('\n') + MakeHeading(section.title, style) + Wrap(section.help);
    return text;
}

QString GetTitle(const CliProgram& program, const CliCommand& command)
{
    return *command.name == '\0' ? QString::fromUtf8(program.name)
                                 : QStringLiteral("%1 %2").arg(QString::fromUtf8(program.name),
                                                               QString::fromUtf8(command.name));
}

const Rows cGeneral = {
    {QStringLiteral("--version"), QStringLiteral("print the version")},
    {QStringLiteral("--manual"), QStringLiteral("print the page of the manual, for man -l -")},
    {QStringLiteral("--completion SHELL"),
     QStringLiteral("print the script that completes calls in bash, zsh or fish")},
};
}  // namespace

QString CliHelp::GetCommand(const CliProgram& program, const CliCommand& command, Style style)
{
    return QStringLiteral("%1: %2\n\n").arg(GetTitle(program, command), QString::fromUtf8(command.summary)) +
           MakeHeading("usage", style) +
           WrapParagraph(CliText::GetCall(program, command), QStringLiteral("  ")) +
           (*command.help == '\0' ? QString() : QLatin1Char('\n') + Wrap(command.help)) +
           MakeTable("arguments", GetArguments(command), style) +
           MakeTable("options", GetOptions(command), style) + MakeExamples(command, style);
}

QString CliHelp::GetProgram(const CliProgram& program, Style style)
{
    const CliCommand& first = program.commands.front();
    if (*first.name == '\0')
        return GetCommand(program, first, style) + MakeTable("more options", cGeneral, style) +
               MakeSections(program, style);
    Rows rows;
    for (const CliCommand& command : program.commands)
        rows.append({QString::fromUtf8(command.name), QString::fromUtf8(command.summary)});
    const QString name = QString::fromUtf8(program.name);
    return QStringLiteral("%1: %2\n\n").arg(name, QString::fromUtf8(program.summary)) +
           MakeHeading("usage", style) + QStringLiteral("  %1 COMMAND ...\n").arg(name) +
           (*program.help == '\0' ? QString() : QLatin1Char('\n') + Wrap(program.help)) +
           MakeTable("commands", rows, style) + MakeTable("options", cGeneral, style) +
           MakeSections(program, style) +
           QStringLiteral("\n\"%1 COMMAND --help\" tells about a command.\n").arg(name);
}

QString CliHelp::GetGroup(const CliProgram& program, const QString& group, Style style)
{
    Rows rows;
    for (const CliCommand& command : program.commands) {
        const QString name = QString::fromUtf8(command.name);
        if (name.startsWith(group + QLatin1Char(' ')))
            rows.append({name, QString::fromUtf8(command.summary)});
    }
    const QString name = QString::fromUtf8(program.name);
    return MakeTable("commands", rows, style).mid(1) +
           QStringLiteral("\n\"%1 %2 COMMAND --help\" tells about a command.\n").arg(name, group);
}

QString CliHelp::GetHint(const CliProgram& program, const CliCommand* command)
{
    const QString title = command == nullptr ? QString::fromUtf8(program.name) : GetTitle(program, *command);
    return QStringLiteral("\"%1 --help\" tells how to call it.\n").arg(title);
}
