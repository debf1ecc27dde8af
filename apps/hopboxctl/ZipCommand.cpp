#include "apps/hopboxctl/ZipCommand.h"

#include "apps/hopboxctl/ErrorPrinter.h"
#include "archive/ZipHelper.h"
#include "foundation/cli/CliConsole.h"

#include <QJsonArray>
#include <QJsonObject>

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
    const bool mIsSeen = CliConsole::IsErrorTerminal();
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
    return isDone ? cCliDone : cCliFailed;
}

QJsonObject getJson(const ZipEntry& entry)
{
    return {{QStringLiteral("name"), entry.name},
            {QStringLiteral("size"), entry.size},
            {QStringLiteral("modified"), entry.getModified().toString(Qt::ISODate)},
            {QStringLiteral("isEncrypted"), entry.isEncrypted()}};
}

int listArchive(const CliCall& call)
{
    ZipErrorPrinter printer;
    ZipRun run;
    run.log = &printer;
    QVector<ZipEntry> entries;
    const bool isWhole = ZipHelper::getEntryList(call.GetArgument(0), entries, run);
    QJsonArray json;
    for (const ZipEntry& entry : entries) {
        json.append(getJson(entry));
        const QString moment = entry.getModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
        const QString size = QString::number(entry.size);
        const QLatin1String mark(entry.isEncrypted() ? "*" : " ");
        Print(QStringLiteral("%1  %2 %3%4\n")
                  .arg(size.rightJustified(12), moment.leftJustified(16), mark, makePrintable(entry.name)));
    }
    SetResult(json);
    return getStatus(isWhole);
}

int extractArchive(const CliCall& call)
{
    const QString archive = call.GetArgument(0);
    const QString folder = call.GetArgument(1);
    const QStringList names = call.GetArguments().mid(2);
    const QString password = call.Get("password");
    const ZipPaths paths = call.Has("without-paths") ? ZipPaths::Drop : ZipPaths::Keep;
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

int createArchive(const CliCall& call)
{
    bool isNumber = true;
    const int level = call.Has("level") ? call.Get("level").toInt(&isNumber) : cDefaultLevel;
    if (!isNumber || level < 0 || level > ZipArchiver::cBestLevel)
        return RefuseCall(QStringLiteral("\"--level\" takes a number from 0 to %1, not \"%2\".")
                              .arg(ZipArchiver::cBestLevel)
                              .arg(call.Get("level")));
    ZipErrorPrinter printer;
    QStringList leftOut;
    ZipRun run;
    run.log = &printer;
    run.leftOut = &leftOut;
    ZipArchiver archiver(call.GetArgument(0));
    archiver.setLogInterface(&printer);
    const QStringList items = call.GetArguments().mid(1);
    const ZipNames names = call.Has("name-field") ? ZipNames::NameField : ZipNames::Plain;
    const auto addItem = [&](const QString& item) {
        return ZipHelper::addItem(archiver, item, QString(), names, run);
    };
    const bool isDone = archiver.StartWriting(ZipStart::Create, call.Get("password"), level) &&
                        std::all_of(items.begin(), items.end(), addItem) && ZipHelper::finish(archiver, run);
    return getStatus(isDone && leftOut.isEmpty());
}

const CliOption cPassword = {"password", "TEXT",
                             "the password; everyone on this computer can see it while the command runs"};
}  // namespace

const Command cZipListCommand = {
    {"zip list",
     "list what an archive holds",
     "A line has the size in bytes, the time of the last change, \"*\" for a protected entry, and the name.",
     {{"ARCHIVE", "the zip archive"}},
     {},
     {{"hopboxctl zip list Package.zip", "Lists the entries of the archive."}}},
    listArchive};

const Command cZipExtractCommand = {
    {"zip extract",
     "extract an archive, or some of its entries",
     "",
     {{"ARCHIVE", "the zip archive"},
      {"DIR", "the folder for what it holds; made when it is missing"},
      {"ENTRY", "an entry to extract; all without one", CliArgument::Count::cAny}},
     {cPassword, {"without-paths", "", "put every file straight into the folder"}},
     {{"hopboxctl zip extract Package.zip out", "Extracts the archive into the folder \"out\"."}}},
    extractArchive};

const Command cZipCreateCommand = {
    {"zip create",
     "make an archive of files and folders",
     "An archive that is there is replaced when the new one is whole.",
     {{"ARCHIVE", "the zip archive"}, {"PATH", "a file or a folder", CliArgument::Count::cSome}},
     {cPassword,
      {"level", "N", "0 (stored) to 9 (smallest); 6 without it"},
      {"name-field", "", "write names in the form of project archives, which few other programs read"}},
     {{"hopboxctl zip create Package.zip Package", "Packs the folder \"Package\"."}}},
    createArchive};
