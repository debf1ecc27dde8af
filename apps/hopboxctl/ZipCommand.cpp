#include "apps/hopboxctl/ZipCommand.h"

#include "apps/hopboxctl/ErrorPrinter.h"
#include "apps/hopboxctl/Terminal.h"
#include "archive/ZipHelper.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>

using namespace Morvane;

namespace
{
constexpr int cDefaultLevel = 6;
constexpr int cBarWidth = 40;

// A line on standard error that fills up, written over as it goes. Says nothing where nobody would see it.
class ProgressBar
{
public:
    ~ProgressBar()
    {
        if (mPercent >= 0)
            std::fputc('\n', stderr);
    }

    void show(qint64 done, qint64 total)
    {
        const int percent = total > 0 ? static_cast<int>(done * 100.0 / total) : 100;
        if (!mIsSeen || percent == mPercent)
            return;
        mPercent = percent;
        const QByteArray bar = QByteArray(percent * cBarWidth / 100, '#').leftJustified(cBarWidth, ' ');
        std::fprintf(stderr, "\r[%s] %3d %%", bar.constData(), percent);
        std::fflush(stderr);
    }

private:
    const bool mIsSeen = IsErrorTerminal();
    int mPercent = -1;
};

// A name as it can be shown: an archive does not get to send a terminal commands.
QString makePrintable(QString name)
{
    for (QChar& character : name) {
        if (!character.isPrint())
            character = QChar::ReplacementCharacter;
    }
    return name;
}

// Shows each failure as a line, with nothing in it that a name could do to the terminal.
class ZipErrorPrinter : public ErrorPrinter
{
public:
    void log(LogLevel level, const QString& source, const QString& message) noexcept override
    {
        ErrorPrinter::log(level, source, makePrintable(message));
    }
};

int getStatus(bool isDone)
{
    return isDone ? cExitDone : cExitFailed;
}

int listArchive(const QString& archive)
{
    ZipErrorPrinter printer;
    ZipRun run;
    run.log = &printer;
    QVector<ZipEntry> entries;
    const bool isWhole = ZipHelper::getEntryList(archive, entries, run);
    for (const ZipEntry& entry : entries) {
        const QString moment = entry.getModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
        const QString size = QString::number(entry.size);
        const QLatin1String mark(entry.isEncrypted() ? "*" : " ");
        Print(QStringLiteral("%1  %2 %3%4\n")
                  .arg(size.rightJustified(12), moment.leftJustified(16), mark, makePrintable(entry.name)));
    }
    return getStatus(isWhole);
}

int extractArchive(const QStringList& arguments, const QString& password, ZipPaths paths)
{
    const QString archive = arguments.at(0);
    const QString folder = arguments.at(1);
    const QStringList names = arguments.mid(2);
    ZipErrorPrinter printer;
    ProgressBar bar;
    ZipRun run;
    run.log = &printer;
    run.progress = [&bar](qint64 done, qint64 total) {
        bar.show(done, total);
        return true;
    };
    return getStatus(names.isEmpty()
                         ? ZipHelper::extractFiles(archive, folder, paths, password, ZipOnError::GoOn, 0, run)
                         : ZipHelper::extractFiles(archive, names, folder, paths, password, 0, run));
}

int createArchive(const QStringList& arguments, const QString& password, int level, ZipNames names)
{
    ZipErrorPrinter printer;
    QStringList leftOut;
    ZipRun run;
    run.log = &printer;
    run.leftOut = &leftOut;
    ZipArchiver archiver(arguments.first());
    archiver.setLogInterface(&printer);
    const QStringList items = arguments.mid(1);
    const auto addItem = [&](const QString& item) {
        return ZipHelper::addItem(archiver, item, QString(), names, run);
    };
    const bool isDone = archiver.StartWriting(ZipStart::Create, password, level) &&
                        std::all_of(items.begin(), items.end(), addItem) && ZipHelper::finish(archiver, run);
    return getStatus(isDone && leftOut.isEmpty());
}

// The options that an action knows, and how its call goes on.
bool parse(QCommandLineParser& parser, const QStringList& arguments, const QList<QCommandLineOption>& options,
           int leastRest)
{
    parser.addOptions(options);
    return parser.parse(arguments) && parser.positionalArguments().size() >= leastRest;
}

int runZip(const QStringList& arguments)
{
    const QCommandLineOption password(QStringLiteral("password"), QString(), QStringLiteral("P"));
    const QCommandLineOption withoutPaths(QStringLiteral("without-paths"));
    const QCommandLineOption level(QStringLiteral("level"), QString(), QStringLiteral("N"),
                                   QString::number(cDefaultLevel));
    const QCommandLineOption nameField(QStringLiteral("name-field"));
    const QString action = arguments.value(0);
    QCommandLineParser parser;
    // What the parser takes for the program's name is the action.
    if (action == QLatin1String("list") && parse(parser, arguments, {}, 1))
        return parser.positionalArguments().size() == 1 ? listArchive(parser.positionalArguments().first())
                                                        : cExitUsage;
    if (action == QLatin1String("extract") && parse(parser, arguments, {password, withoutPaths}, 2))
        return extractArchive(parser.positionalArguments(), parser.value(password),
                              parser.isSet(withoutPaths) ? ZipPaths::Drop : ZipPaths::Keep);
    if (action == QLatin1String("create") && parse(parser, arguments, {password, level, nameField}, 2)) {
        bool isNumber = false;
        const int number = parser.value(level).toInt(&isNumber);
        if (isNumber && number >= 0 && number <= ZipArchiver::cBestLevel)
            return createArchive(parser.positionalArguments(), parser.value(password), number,
                                 parser.isSet(nameField) ? ZipNames::NameField : ZipNames::Plain);
    }
    return cExitUsage;
}
}  // namespace

const Command cZipCommand = {"zip",
                             "zip list ARCHIVE\n"
                             "zip extract ARCHIVE DIR [--password P] [--without-paths] [NAME...]\n"
                             "zip create ARCHIVE PATH... [--password P] [--level N] [--name-field]",
                             runZip};
