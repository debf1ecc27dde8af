#include "hosts/layout_host/commandline/CommandLine.h"

#include <QCommandLineParser>

namespace
{
const QString cExport = QStringLiteral("export");
const QString cExportBook = QStringLiteral("export-book");
const QString cHopbox = QStringLiteral("hopbox");
const QString cPages = QStringLiteral("pages");
const QString cPackage = QStringLiteral("package");
const QString cOptions = QStringLiteral("options");
const QString cTimeout = QStringLiteral("timeout");
const QString cHelp = QStringLiteral("help");

constexpr int cLongestRun = 24 * 60 * 60;  // seconds

void AddOptions(QCommandLineParser& parser)
{
    const QString value = QStringLiteral("value");
    for (const QString& name : {cExport, cExportBook, cHopbox, cPages, cOptions, cTimeout})
        parser.addOption({name, QString(), value});
    for (const QString& name : {cPackage, cHelp})
        parser.addOption(QCommandLineOption(name));
}

// The first thing that keeps the arguments from being a call; empty when there is none.
QString FindFault(const QCommandLineParser& parser)
{
    const bool isDocument = parser.isSet(cExport);
    const bool isBook = parser.isSet(cExportBook);
    if (!isDocument && !isBook)
        return parser.optionNames().isEmpty() ? QString()
                                              : QStringLiteral("--export or --export-book is missing");
    if (isDocument == isBook || parser.values(cExport).size() + parser.values(cExportBook).size() > 1)
        return QStringLiteral("one export at a time");
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected \"%1\"").arg(parser.positionalArguments().constFirst());
    if (parser.value(cHopbox).isEmpty())
        return QStringLiteral("--hopbox is missing");
    if (isBook && parser.isSet(cPages))
        return QStringLiteral("a book is exported as a whole, without --pages");
    if (parser.isSet(cOptions) && parser.value(cOptions) != QLatin1String("open"))
        return QStringLiteral("--options can only be \"open\"");
    return {};
}

bool ParseSeconds(const QString& text, int& seconds)
{
    bool isNumber = false;
    seconds = text.toInt(&isNumber);
    return isNumber && seconds > 0 && seconds <= cLongestRun;
}

CommandLine MakeWrong(const QString& error)
{
    CommandLine line;
    line.error = error;
    return line;
}
}  // namespace

QString CommandLine::GetUsage()
{
    return QStringLiteral(
        "usage:\n"
        "  layout-host [FILE...]\n"
        "  layout-host --export DOCUMENT --hopbox NAME [--pages RANGE] [--package] [--options open]"
        " [--timeout SECONDS]\n"
        "  layout-host --export-book BOOK --hopbox NAME [--package] [--options open]"
        " [--timeout SECONDS]\n");
}

CommandLine CommandLine::Parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    AddOptions(parser);
    // The parser passes over the program's name.
    if (!parser.parse(QStringList(QString()) + arguments))
        return MakeWrong(parser.errorText());
    CommandLine line;
    if (parser.isSet(cHelp)) {
        line.mode = Mode::Help;
        return line;
    }
    const QString fault = FindFault(parser);
    if (!fault.isEmpty())
        return MakeWrong(fault);
    if (parser.isSet(cTimeout) && !ParseSeconds(parser.value(cTimeout), line.seconds))
        return MakeWrong(QStringLiteral("--timeout takes seconds, from 1 to %1").arg(cLongestRun));
    line.isBook = parser.isSet(cExportBook);
    line.files = parser.positionalArguments() + parser.values(cExport) + parser.values(cExportBook);
    line.mode = parser.isSet(cHopbox) ? Mode::Export : Mode::Window;
    line.choices.hopbox = parser.value(cHopbox);
    if (parser.isSet(cPages))
        line.choices.pages = parser.value(cPages);
    line.choices.includesPackage = parser.isSet(cPackage);
    line.choices.opensOptions = parser.isSet(cOptions);
    return line;
}
