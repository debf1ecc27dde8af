#include "apps/hopboxctl/ZipCommand.h"

#include "apps/hopboxctl/ZipOptions.h"
#include "apps/hopboxctl/ZipOutput.h"
#include "archive/ZipArchive.h"
#include "archive/ZipHelper.h"
#include "foundation/cli/CliStop.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

using namespace Morvane;

namespace
{
constexpr int cDefaultLevel = 6;

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

qint64 getTotalSize(const QVector<ZipEntry>& entries)
{
    qint64 total = 0;
    for (const ZipEntry& entry : entries)
        total += entry.size;
    return total;
}

// Reads every entry; the names of those that are not whole.
QStringList findDamaged(const QString& path, const QString& password, qint64 total, ZipErrorPrinter& printer)
{
    QStringList damaged;
    ProgressBar bar;
    qint64 done = 0;
    ZipArchive archive(path);
    archive.setLogInterface(&printer);
    for (archive.StartIterate(); !archive.AtEnd() && !CliStop::IsAskedFor(); archive.Next()) {
        const bool isWhole = archive.CheckCurrentFile(password, [&](qint64 bytes) {
            done += bytes;
            return bar.show(done, total);
        });
        if (!isWhole)
            damaged.append(archive.GetCurrentFileName());
    }
    return damaged;
}

int testArchive(const CliCall& call)
{
    const QString fault = ZipOptions::FindFault(call);
    if (!fault.isEmpty())
        return RefuseCall(fault);
    const CliStop stop;
    const std::optional<QString> password = ZipOptions::GetPassword(call);
    ZipErrorPrinter printer;
    ZipRun run;
    run.log = &printer;
    QVector<ZipEntry> entries;
    if (!password || !ZipHelper::getEntryList(call.GetArgument(0), entries, run))
        return cCliFailed;
    const QStringList damaged = findDamaged(call.GetArgument(0), *password, getTotalSize(entries), printer);
    SetResult(QJsonObject{{QStringLiteral("entries"), entries.size()},
                          {QStringLiteral("damaged"), QJsonArray::fromStringList(damaged)}});
    if (CliStop::IsAskedFor()) {
        PrintError(QStringLiteral("Stopped."));
        return cCliFailed;
    }
    if (damaged.isEmpty())
        Print(QStringLiteral("%1 entries, all whole.\n").arg(entries.size()));
    return getStatus(damaged.isEmpty());
}

qint64 getTotalSize(const QStringList& items)
{
    qint64 total = 0;
    for (const QString& item : items) {
        QDirIterator files(item, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        total += QFileInfo(item).isFile() ? QFileInfo(item).size() : 0;
        while (files.hasNext() && !CliStop::IsAskedFor()) {
            files.next();
            total += files.fileInfo().size();
        }
    }
    return total;
}

int writeArchive(const CliCall& call, ZipStart start)
{
    bool isNumber = true;
    const int level = call.Has("level") ? call.Get("level").toInt(&isNumber) : cDefaultLevel;
    if (!isNumber || level < 0 || level > ZipArchiver::cBestLevel)
        return RefuseCall(QStringLiteral("\"--level\" takes a number from 0 to %1, not \"%2\".")
                              .arg(ZipArchiver::cBestLevel)
                              .arg(call.Get("level")));
    const QString fault = ZipOptions::FindFault(call);
    if (!fault.isEmpty())
        return RefuseCall(fault);
    const CliStop stop;
    const std::optional<QString> password = ZipOptions::GetPassword(call);
    if (!password)
        return cCliFailed;
    ZipErrorPrinter printer;
    QStringList leftOut;
    ZipRun run;
    run.log = &printer;
    run.leftOut = &leftOut;
    ZipArchiver archiver(call.GetArgument(0));
    archiver.setLogInterface(&printer);
    const QStringList items = call.GetArguments().mid(1);
    ProgressBar bar;
    qint64 done = 0;
    archiver.setProgress([&, total = getTotalSize(items)](qint64 bytes) {
        done += bytes;
        return bar.show(done, total);
    });
    const ZipNames names = call.Has("name-field") ? ZipNames::NameField : ZipNames::Plain;
    const auto addItem = [&](const QString& item) {
        return ZipHelper::addItem(archiver, item, QString(), names, run);
    };
    const bool isDone = archiver.StartWriting(start, *password, level) &&
                        std::all_of(items.begin(), items.end(), addItem) && ZipHelper::finish(archiver, run);
    return getStatus(isDone && leftOut.isEmpty());
}

int createArchive(const CliCall& call)
{
    return writeArchive(call, ZipStart::Create);
}

int addToArchive(const CliCall& call)
{
    return writeArchive(call, ZipStart::Append);
}

std::vector<CliOption> getWriteOptions()
{
    std::vector<CliOption> options = ZipOptions::GetPasswordOptions();
    options.push_back({"level", "N", "0 (stored) to 9 (smallest); 6 without it"});
    options.push_back(
        {"name-field", "", "write names in the form of project archives, which few other programs read"});
    return options;
}
}  // namespace

const Command cZipListCommand = {
    {"zip list",
     "list what an archive holds",
     "A line has the size in bytes, the time of the last change, \"*\" for a protected entry, and the name.",
     {{"ARCHIVE", "the zip archive"}},
     {},
     {{"hopboxctl zip list Package.zip", "Lists the entries of the archive."}}},
    listArchive};

const Command cZipTestCommand = {
    {"zip test",
     "look whether every entry of an archive is whole",
     "It reads all of the archive and writes nothing.",
     {{"ARCHIVE", "the zip archive"}},
     ZipOptions::GetPasswordOptions(),
     {{"hopboxctl zip test Package.zip", "Compares every entry with its checksum."}}},
    testArchive};

const Command cZipCreateCommand = {
    {"zip create",
     "make an archive of files and folders",
     "An archive that is there is replaced when the new one is whole; Ctrl-C leaves it as it was. What can't "
     "be packed (links to folders "
     "and to nothing, pipes, files that can't be read) is named, the rest is packed, and the exit status is "
     "1.",
     {{"ARCHIVE", "the zip archive"}, {"PATH", "a file or a folder", CliArgument::Count::cSome}},
     getWriteOptions(),
     {{"hopboxctl zip create Package.zip Package", "Packs the folder \"Package\"."}}},
    createArchive};

const Command cZipAddCommand = {
    {"zip add",
     "add files and folders to an archive",
     "A name that the archive has already is refused. If anything fails, and after Ctrl-C, the archive stays "
     "as "
     "it was.",
     {{"ARCHIVE", "the zip archive; made where there is none"},
      {"PATH", "a file or a folder", CliArgument::Count::cSome}},
     getWriteOptions(),
     {{"hopboxctl zip add Package.zip Report.pdf", "Adds a file to the archive."}}},
    addToArchive};
