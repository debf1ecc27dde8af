#include "foundation/cli/CliText.h"

#include <QStringList>

namespace
{
QString GetArgument(const CliArgument& argument)
{
    const QString name = QString::fromUtf8(argument.name);
    switch (argument.count) {
        case CliArgument::Count::cOne:
            return name;
        case CliArgument::Count::cOptional:
            return QStringLiteral("[%1]").arg(name);
        case CliArgument::Count::cSome:
            return name + QLatin1String("...");
        case CliArgument::Count::cAny:
            break;
    }
    return QStringLiteral("[%1...]").arg(name);
}

// The blank within it is one at which no line is broken.
QString GetUse(const CliOption& option)
{
    const QString text = CliText::GetOption(option).replace(QLatin1Char(' '), QChar(QChar::Nbsp));
    switch (option.use) {
        case CliOption::Use::cRequired:
            return text;
        case CliOption::Use::cOptional:
            return QStringLiteral("[%1]").arg(text);
        case CliOption::Use::cRepeated:
            break;
    }
    return QStringLiteral("[%1]...").arg(text);
}
}  // namespace

QVector<CliText::Paragraph> CliText::Split(const char* help)
{
    QVector<Paragraph> paragraphs;
    for (const QString& text : QString::fromUtf8(help).split(QStringLiteral("\n\n"), Qt::SkipEmptyParts))
        paragraphs.append({text, text.startsWith(QLatin1Char(' '))});
    return paragraphs;
}

QString CliText::GetOption(const CliOption& option)
{
    const QString name = QStringLiteral("--") + QLatin1String(option.name);
    return *option.values == '\0' ? name : name + QLatin1Char(' ') + QLatin1String(option.values);
}

QString CliText::GetCall(const CliProgram& program, const CliCommand& command)
{
    QStringList words = {QString::fromUtf8(program.name)};
    if (*command.name != '\0')
        words.append(QString::fromUtf8(command.name));
    for (const CliArgument& argument : command.arguments)
        words.append(GetArgument(argument));
    for (const CliOption& option : command.options)
        words.append(GetUse(option));
    return words.join(QLatin1Char(' '));
}
