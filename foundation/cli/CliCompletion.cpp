#include "foundation/cli/CliCompletion.h"

#include "foundation/cli/CliText.h"

#include <QStringList>

namespace
{
// What stands in the place of a value or argument.
enum class Kind
{
    cFile,
    cFolder,
    cName,
    cOther
};

Kind GetKind(const QString& name)
{
    static const QStringList cFiles = {QStringLiteral("FILE"), QStringLiteral("PATH"),
                                       QStringLiteral("ARCHIVE"), QStringLiteral("DOCUMENT"),
                                       QStringLiteral("BOOK")};
    if (cFiles.contains(name))
        return Kind::cFile;
    if (name == QLatin1String("DIR"))
        return Kind::cFolder;
    return name == QLatin1String("NAME") ? Kind::cName : Kind::cOther;
}

QString Pick(Kind kind, const char* file, const char* folder, const char* name)
{
    switch (kind) {
        case Kind::cFile:
            return QLatin1String(file);
        case Kind::cFolder:
            return QLatin1String(folder);
        case Kind::cName:
            return QLatin1String(name);
        case Kind::cOther:
            break;
    }
    return {};
}

// A name that shells take for a function.
QString GetFunction(const CliProgram& program)
{
    QString name = QLatin1Char('_') + QLatin1String(program.name);
    for (QChar& character : name)
        character = character.isLetterOrNumber() ? character : QLatin1Char('_');
    return name;
}

QString Quote(const QString& text)
{
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QLatin1String("'\\''")) +
           QLatin1Char('\'');
}

QStringList GetOptions(const CliCommand& command)
{
    QStringList names;
    for (const CliOption& option : command.options)
        names.append(QStringLiteral("--") + QLatin1String(option.name));
    return names << QStringLiteral("--help");
}

struct Word
{
    QString word;
    QString help;
};

// The words that may stand first, or behind a group's name.
QVector<Word> GetWords(const CliProgram& program, const QString& group)
{
    QVector<Word> words;
    for (const CliCommand& command : program.commands) {
        const QStringList name = QString::fromUtf8(command.name).split(QLatin1Char(' '));
        const bool isMember = name.size() == 2;
        if (isMember && group == name.first())
            words.append({name.last(), QString::fromUtf8(command.summary)});
        else if (group.isEmpty() && !isMember && !name.first().isEmpty())
            words.append({name.first(), QString::fromUtf8(command.summary)});
        else if (group.isEmpty() && isMember && (words.isEmpty() || words.last().word != name.first()))
            words.append({name.first(), QStringLiteral("more commands")});
    }
    return words;
}

QStringList GetGroups(const CliProgram& program)
{
    QStringList groups;
    for (const CliCommand& command : program.commands) {
        const QStringList name = QString::fromUtf8(command.name).split(QLatin1Char(' '));
        if (name.size() == 2 && !groups.contains(name.first()))
            groups.append(name.first());
    }
    return groups;
}

QString JoinWords(const QVector<Word>& words)
{
    QStringList texts;
    for (const Word& word : words)
        texts.append(word.word);
    return texts.join(QLatin1Char(' '));
}

bool HasCommands(const CliProgram& program)
{
    return *program.commands.front().name != '\0';
}

QString GetBashCase(const CliCommand& command)
{
    QStringList valued;
    QString values;
    for (const CliOption& option : command.options) {
        if (*option.values == '\0')
            continue;
        const QString name = QStringLiteral("--") + QLatin1String(option.name);
        valued.append(name);
        values += QStringLiteral(" %1) kind=%2 ;;")
                      .arg(name, Pick(GetKind(QLatin1String(option.values)), "file", "folder", "name"));
    }
    QStringList kinds;
    for (const CliArgument& argument : command.arguments)
        kinds.append(Quote(Pick(GetKind(QLatin1String(argument.name)), "file", "folder", "name")));
    return QStringLiteral("        %1)\n            options=%2 valued=%3 kinds=(%4)\n")
               .arg(Quote(QString::fromUtf8(command.name)), Quote(GetOptions(command).join(QLatin1Char(' '))),
                    Quote(valued.join(QLatin1Char(' '))), kinds.join(QLatin1Char(' '))) +
           (values.isEmpty() ? QString()
                             : QStringLiteral("            case $previous in%1 esac\n").arg(values)) +
           QStringLiteral("            ;;\n");
}

// What finds the command of a program that has some: its words become `command`.
QString GetBashCommandSearch(const CliProgram& program)
{
    if (!HasCommands(program))
        return {};
    QString text = QStringLiteral(
                       "    if ((COMP_CWORD == 1)); then\n"
                       "        COMPREPLY=($(compgen -W %1 -- \"$word\"))\n        return\n    fi\n"
                       "    command=${COMP_WORDS[1]} start=2\n    case $command in\n")
                       .arg(Quote(JoinWords(GetWords(program, QString())) +
                                  QLatin1String(" help --help --version --manual --completion")));
    for (const QString& group : GetGroups(program))
        text += QStringLiteral(
                    "        %1)\n            if ((COMP_CWORD == 2)); then\n"
                    "                COMPREPLY=($(compgen -W %2 -- \"$word\"))\n"
                    "                return\n            fi\n"
                    "            command+=\" ${COMP_WORDS[2]}\" start=3\n            ;;\n")
                    .arg(group, Quote(JoinWords(GetWords(program, group)) + QLatin1String(" --help")));
    text += QStringLiteral("    esac\n");
    return text;
}

// What completes the word, once it is known which options and arguments there are.
QString GetBashEnd()
{
    return QStringLiteral(
        "    esac\n"
        "    for ((at = start; at < COMP_CWORD; at++)); do\n"
        "        [[ ${COMP_WORDS[at]} == -* || \" $valued \" == *\" ${COMP_WORDS[at-1]} \"* ]] && "
        "continue\n"
        "        place=$((place + 1))\n"
        "    done\n"
        "    if [[ \" $valued \" != *\" $previous \"* ]]; then\n"
        "        if [[ $word == -* ]]; then COMPREPLY=($(compgen -W \"$options\" -- \"$word\")); "
        "return; fi\n"
        "        ((place < ${#kinds[@]})) || place=$((${#kinds[@]} - 1))\n"
        "        ((place < 0)) || kind=${kinds[place]}\n"
        "    fi\n"
        "    case $kind in\n"
        "        file) mapfile -t COMPREPLY < <(compgen -f -- \"$word\") ;;\n"
        "        folder) mapfile -t COMPREPLY < <(compgen -d -- \"$word\") ;;\n"
        "        name)\n"
        "            while IFS= read -r at; do\n"
        "                [[ $at == \"$word\"* ]] && COMPREPLY+=(\"$at\")\n"
        "            done < <(%1 list --names 2> /dev/null)\n"
        "            ;;\n"
        "    esac\n"
        "}\n"
        "complete -o filenames -F %2 %1\n");
}

QString GetBashScript(const CliProgram& program)
{
    const QString name = QString::fromUtf8(program.name);
    const QString function = GetFunction(program);
    QString text = QStringLiteral("# Completes calls of %1 in bash.\n%2()\n{\n").arg(name, function) +
                   QStringLiteral(
                       "    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
                       "    local command= start=1 options='' valued='' kinds=() kind='' at place=0\n"
                       "    COMPREPLY=()\n"
                       "    if [[ $word == '=' ]]; then word=''\n"
                       "    elif [[ $previous == '=' ]]; then previous=${COMP_WORDS[COMP_CWORD-2]}; fi\n");
    text += GetBashCommandSearch(program);
    text += QStringLiteral("    case $command in\n");
    for (const CliCommand& command : program.commands)
        text += GetBashCase(command);
    return text + GetBashEnd().arg(name, function);
}

// A text within one of the specifications of _arguments.
QString EscapeForZsh(const char* text)
{
    QString escaped = QString::fromUtf8(text);
    for (const char* character : {"\\", "[", "]", ":"})
        escaped.replace(QLatin1String(character), QLatin1Char('\\') + QLatin1String(character));
    return escaped;
}

QString GetZshCase(const CliCommand& command, const QString& function)
{
    const QByteArray names = function.toUtf8() + "_names";
    const auto getAction = [&](const QString& name) {
        return Pick(GetKind(name), "_files", "_files -/", names.constData());
    };
    QStringList words = {Quote(QStringLiteral("--help[print help]"))};
    for (const CliOption& option : command.options) {
        const bool isSwitch = *option.values == '\0';
        QString word = option.use == CliOption::Use::cRepeated ? QStringLiteral("*") : QString();
        word += QStringLiteral("--%1%2[%3]")
                    .arg(QLatin1String(option.name), isSwitch ? QString() : QStringLiteral("="),
                         EscapeForZsh(option.help));
        if (!isSwitch) {
            for (const QString& value : QString::fromUtf8(option.values).split(QLatin1Char(' ')))
                word += QStringLiteral(":%1:%2").arg(value, getAction(value));
        }
        words.append(Quote(word));
    }
    for (const CliArgument& argument : command.arguments) {
        const QString name = QString::fromUtf8(argument.name);
        const bool isOpen =
            argument.count == CliArgument::Count::cSome || argument.count == CliArgument::Count::cAny;
        words.append(Quote(
            QStringLiteral("%1:%2:%3").arg(isOpen ? QStringLiteral("*") : QString(), name, getAction(name))));
    }
    return QStringLiteral("        %1)\n            _arguments %2\n            ;;\n")
        .arg(Quote(QString::fromUtf8(command.name)), words.join(QLatin1String(" \\\n                ")));
}

QString GetZshList(const QVector<Word>& words, const QString& indent)
{
    QString text = indent + QLatin1String("commands=(\n");
    for (const Word& word : words)
        text += indent + QLatin1String("    ") + Quote(word.word + QLatin1Char(':') + word.help) +
                QLatin1Char('\n');
    return text + indent + QLatin1String(")\n") + indent + QLatin1String("_describe command commands\n") +
           indent + QLatin1String("return\n");
}

QString GetZshScript(const CliProgram& program)
{
    const QString name = QString::fromUtf8(program.name);
    const QString function = GetFunction(program);
    QString text = QStringLiteral(
                       "#compdef %1\n# Completes calls of %1 in zsh.\n"
                       "%2_names()\n{\n    local -a names\n"
                       "    names=(${(f)\"$(%1 list --names 2> /dev/null)\"})\n"
                       "    compadd -a names\n}\n%2()\n{\n    local -a commands\n    local command=\n")
                       .arg(name, function);
    if (HasCommands(program)) {
        text += QStringLiteral("    if ((CURRENT == 2)); then\n") +
                GetZshList(GetWords(program, QString()), QString(8, QLatin1Char(' '))) +
                QStringLiteral("    fi\n    command=$words[2]\n    case $command in\n");
        for (const QString& group : GetGroups(program))
            text += QStringLiteral("        %1)\n            if ((CURRENT == 3)); then\n").arg(group) +
                    GetZshList(GetWords(program, group), QString(16, QLatin1Char(' '))) +
                    QStringLiteral(
                        "            fi\n            command+=\" $words[3]\"\n"
                        "            shift words\n            ((CURRENT--))\n            ;;\n");
        text += QStringLiteral("    esac\n    shift words\n    ((CURRENT--))\n");
    }
    text += QStringLiteral("    case $command in\n");
    for (const CliCommand& command : program.commands)
        text += GetZshCase(command, function);
    return text + QStringLiteral(
                      "    esac\n}\n"
                      "if [[ $funcstack[1] == %2 ]]; then %2 \"$@\"; else compdef %2 %1; fi\n")
                      .arg(name, function);
}

QString GetFishAction(Kind kind, const QString& name)
{
    if (kind == Kind::cName)
        return QStringLiteral(" -f -a %1")
            .arg(Quote(QStringLiteral("(%1 list --names 2> /dev/null)").arg(name)));
    if (kind == Kind::cFolder)
        return QStringLiteral(" -f -a '(__fish_complete_directories)'");
    return kind == Kind::cFile ? QStringLiteral(" -F") : QStringLiteral(" -f");
}

// When a command's options and arguments are due.
QString GetFishCondition(const CliCommand& command)
{
    const QStringList words = QString::fromUtf8(command.name).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QStringList seen;
    for (const QString& word : words)
        seen.append(QStringLiteral("__fish_seen_subcommand_from ") + word);
    return seen.isEmpty() ? QString() : QStringLiteral(" -n ") + Quote(seen.join(QLatin1String("; and ")));
}

QString GetFishScript(const CliProgram& program)
{
    const QString name = QString::fromUtf8(program.name);
    const QString lead = QStringLiteral("complete -c %1").arg(name);
    QString text = QStringLiteral("# Completes calls of %1 in fish.\n%2 -f\n").arg(name, lead);
    const auto addWords = [&](const QString& condition, const QVector<Word>& words) {
        for (const Word& word : words)
            text += QStringLiteral("%1 -n %2 -a %3 -d %4\n")
                        .arg(lead, Quote(condition), word.word, Quote(word.help));
    };
    addWords(QStringLiteral("__fish_use_subcommand"), GetWords(program, QString()));
    for (const QString& group : GetGroups(program))
        addWords(QStringLiteral("__fish_seen_subcommand_from %1; and not __fish_seen_subcommand_from %2")
                     .arg(group, JoinWords(GetWords(program, group))),
                 GetWords(program, group));
    for (const CliCommand& command : program.commands) {
        const QString condition = GetFishCondition(command);
        text += lead + condition + QLatin1String(" -l help -d 'print help'\n");
        for (const CliOption& option : command.options) {
            text += lead + condition +
                    QStringLiteral(" -l %1 -d %2")
                        .arg(QLatin1String(option.name), Quote(QString::fromUtf8(option.help)));
            if (*option.values != '\0')
                text += QLatin1String(" -r") + GetFishAction(GetKind(QLatin1String(option.values)), name);
            text += QLatin1Char('\n');
        }
        for (const CliArgument& argument : command.arguments)
            text += lead + condition + GetFishAction(GetKind(QLatin1String(argument.name)), name) +
                    QLatin1Char('\n');
    }
    return text;
}
}  // namespace

QString CliCompletion::GetScript(const CliProgram& program, const QString& shell)
{
    if (shell == QLatin1String("zsh"))
        return GetZshScript(program);
    return shell == QLatin1String("fish") ? GetFishScript(program) : GetBashScript(program);
}
