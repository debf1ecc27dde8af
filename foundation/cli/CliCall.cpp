#include "foundation/cli/CliCall.h"

#include "foundation/cli/NearestWord.h"

#include <QRegularExpression>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace
{
const QString cDashes = QStringLiteral("--");
constexpr int cMostWords = 1 << 20;

// The parser takes an empty value behind "=" for a missing one, and a word in brackets for a list. A word
// whose end can do that gets a mark, and so does one that ends with the mark, so that it can be taken off
// again.
constexpr char cMark = '\x01';

std::string Encode(const QString& word)
{
    std::string text = word.toStdString();
    if (!text.empty() && (text.back() == '=' || text.back() == ']' || text.back() == cMark))
        text += cMark;
    return text;
}

QString Decode(std::string text)
{
    if (!text.empty() && text.back() == cMark)
        text.pop_back();
    return QString::fromStdString(text);
}

QStringList Decode(const std::vector<std::string>& texts)
{
    QStringList words;
    for (const std::string& text : texts)
        words.append(Decode(text));
    return words;
}

QString Quote(const QString& word)
{
    return QLatin1Char('"') + word + QLatin1Char('"');
}

bool IsSwitch(const CliOption& option)
{
    return *option.values == '\0';
}

QStringList GetOptionNames(const CliCommand& command)
{
    QStringList names = {QStringLiteral("--help")};
    for (const CliOption& option : command.options)
        names.append(cDashes + QLatin1String(option.name));
    return names;
}

const CliCommand* FindCommand(const CliProgram& program, const QString& name)
{
    const auto found = std::find_if(program.commands.begin(), program.commands.end(),
                                    [&](const CliCommand& each) { return name == QLatin1String(each.name); });
    return found == program.commands.end() ? nullptr : &*found;
}

// The words that may stand first, or behind the group's name.
QStringList GetCommandWords(const CliProgram& program, const QString& group)
{
    QStringList words;
    for (const CliCommand& command : program.commands) {
        const QStringList name = QString::fromUtf8(command.name).split(QLatin1Char(' '));
        if (group.isEmpty())
            words.append(name.first());
        else if (name.size() == 2 && name.first() == group)
            words.append(name.last());
    }
    words.removeDuplicates();
    return words;
}

QString DescribeUnknown(const QString& word, const CliCommand& command)
{
    const QString name = word.section(QLatin1Char('='), 0, 0);
    return QStringLiteral("There is no option %1.").arg(Quote(name)) +
           AskForNearestWord(name, GetOptionNames(command));
}

// The parser's errors begin with the option's name, with its dashes or without.
QString DescribeMismatch(const QString& error, const CliCommand& command)
{
    for (const CliOption& option : command.options) {
        const QString name = cDashes + QLatin1String(option.name);
        const QString named = error.section(QRegularExpression(QStringLiteral("[: ]")), 0, 0);
        if (named != name && named != QLatin1String(option.name))
            continue;
        return IsSwitch(option) ? QStringLiteral("%1 takes no value.").arg(Quote(name))
                                : QStringLiteral("%1 needs a value: %2 %3.")
                                      .arg(Quote(name), name, QLatin1String(option.values));
    }
    return error;
}
}  // namespace

CliCall CliCall::Read(const CliProgram& program, const QStringList& words)
{
    CliCall call;
    QStringList rest = words;
    call.mCommand = FindCommand(program, QString());
    const QString first = words.value(0);
    if (first == QLatin1String("--version"))
        call.mKind = Kind::cVersion;
    else if (first == QLatin1String("--manual"))
        call.mKind = Kind::cManual;
    else if (first == QLatin1String("--completion") || first.startsWith(QLatin1String("--completion=")))
        call.ReadCompletion(words);
    else if (call.mCommand == nullptr)
        call.FindNamed(program, rest);
    if (call.mKind == Kind::cRun && call.mCommand != nullptr)
        call.ReadWords(rest);
    return call;
}

void CliCall::ReadCompletion(const QStringList& words)
{
    static const QStringList cShells = {QStringLiteral("bash"), QStringLiteral("zsh"),
                                        QStringLiteral("fish")};
    const bool isJoined = words.first().contains(QLatin1Char('='));
    mTopic = isJoined ? words.first().section(QLatin1Char('='), 1) : words.value(1);
    mKind = Kind::cCompletion;
    if (!cShells.contains(mTopic))
        Refuse(QStringLiteral("\"--completion\" needs a shell: bash, zsh or fish.") +
               AskForNearestWord(mTopic, cShells));
}

// Finds the command that the words begin with, and takes its name off them.
void CliCall::FindNamed(const CliProgram& program, QStringList& words)
{
    const bool isHelp = !words.isEmpty() &&
                        (words.first() == QLatin1String("help") || words.first() == QLatin1String("--help") ||
                         words.first() == QLatin1String("-h"));
    if (isHelp)
        words.removeFirst();
    const QString first = words.value(0);
    for (int count = 2; count > 0 && mCommand == nullptr; --count) {
        mCommand = FindCommand(program, QStringList(words.mid(0, count)).join(QLatin1Char(' ')));
        if (mCommand != nullptr)
            words = words.mid(count);
    }
    const QStringList members = first.isEmpty() ? QStringList() : GetCommandWords(program, first);
    const QString second = words.value(1);
    if (mCommand != nullptr || (isHelp && words.isEmpty())) {
        mKind = isHelp ? Kind::cHelp : Kind::cRun;
    } else if (words.isEmpty()) {
        Refuse(QStringLiteral("A command is missing."));
    } else if (members.isEmpty() && first.startsWith(QLatin1Char('-'))) {
        static const QStringList cOptions = {QStringLiteral("--help"), QStringLiteral("--version"),
                                             QStringLiteral("--manual"), QStringLiteral("--completion")};
        Refuse(QStringLiteral("There is no option %1 before a command.").arg(Quote(first)) +
               AskForNearestWord(first, cOptions));
    } else if (members.isEmpty()) {
        Refuse(QStringLiteral("There is no command %1.").arg(Quote(first)) +
               AskForNearestWord(first, GetCommandWords(program, QString())));
    } else if ((isHelp && second.isEmpty()) || second == QLatin1String("--help") ||
               second == QLatin1String("-h")) {
        mKind = Kind::cHelp;
        mTopic = first;
    } else {
        mTopic = first;
        Refuse((second.isEmpty() ? QStringLiteral("%1 needs a command: %2.")
                                       .arg(Quote(first), members.join(QLatin1String(", ")))
                                 : QStringLiteral("There is no command %1 in %2: it has %3.")
                                       .arg(Quote(second), Quote(first), members.join(QLatin1String(", ")))) +
               AskForNearestWord(second, members));
    }
}

// Teaches the parser the options and gives what the arguments are read into.
static CLI::Option* AddOptions(const std::vector<CliOption>& options, CLI::App& app)
{
    app.allow_windows_style_options(false)->allow_extras(true);
    app.set_help_flag("-h,--help");
    for (const CliOption& option : options) {
        const std::string name = std::string("--") + option.name;
        CLI::Option* added = nullptr;
        if (IsSwitch(option))
            added = app.add_flag(name)->disable_flag_override();
        else
            added = app.add_option(name)
                        ->type_size(QString::fromUtf8(option.values).count(QLatin1Char(' ')) + 1)
                        ->allow_extra_args(false);
        added->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }
    return app.add_option("ARGUMENTS")
        ->type_size(1)
        ->expected(0, cMostWords)
        ->allow_extra_args()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void CliCall::ReadWords(const QStringList& words)
{
    CLI::App app;
    const CLI::Option* arguments = AddOptions(mCommand->options, app);
    std::vector<std::string> texts;
    for (const QString& word : words)
        texts.insert(texts.begin(), Encode(word));  // the parser takes them from the end
    try {
        app.parse(std::move(texts));
    } catch (const CLI::CallForHelp&) {
        mKind = Kind::cHelp;
        return;
    } catch (const CLI::ParseError& error) {
        Refuse(DescribeMismatch(QString::fromUtf8(error.what()), *mCommand));
        return;
    }
    if (app.remaining_size() > 0) {
        Refuse(DescribeUnknown(Decode(app.remaining().front()), *mCommand));
        return;
    }
    for (const CliOption& option : mCommand->options) {
        const CLI::Option* given = app.get_option(std::string("--") + option.name);
        if (given->count() > 0)
            mOptions[QLatin1String(option.name)] =
                IsSwitch(option) ? QStringList() : Decode(given->results());
    }
    mArguments = Decode(arguments->results());
    FindMissing();
}

// Looks for what the description asks for and the call lacks, and the other way round.
void CliCall::FindMissing()
{
    int place = 0;
    bool isOpen = false;
    for (const CliArgument& argument : mCommand->arguments) {
        const bool isNeeded =
            argument.count == CliArgument::Count::cOne || argument.count == CliArgument::Count::cSome;
        if (isNeeded && mArguments.value(place).isEmpty()) {
            Refuse(QStringLiteral("%1 is missing.").arg(QLatin1String(argument.name)));
            return;
        }
        isOpen = argument.count == CliArgument::Count::cSome || argument.count == CliArgument::Count::cAny;
        ++place;
    }
    if (!isOpen && mArguments.size() > place) {
        Refuse(QStringLiteral("Unexpected %1.").arg(Quote(mArguments.at(place))));
        return;
    }
    for (const CliOption& option : mCommand->options) {
        if (option.use == CliOption::Use::cRequired && !Has(option.name)) {
            Refuse(QStringLiteral("--%1 %2 is missing.")
                       .arg(QLatin1String(option.name), QLatin1String(option.values)));
            return;
        }
    }
}

QString CliCall::Get(const char* option) const
{
    const QStringList values = GetAll(option);
    return values.isEmpty() ? QString() : values.last();
}

CliCall& CliCall::Refuse(const QString& error)
{
    mKind = Kind::cWrong;
    mError = error;
    return *this;
}
