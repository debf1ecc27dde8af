#include "archive/ZipHelper.h"

#include "archive/ZipDestination.h"
#include "archive/ZipExtraction.h"
#include "archive/ZipPassword.h"
#include "archive/ZipReader.h"
#include "archive/ZipSource.h"

#include <QDir>
#include <QDirIterator>
#include <QMap>

#include <new>

using namespace Morvane;

namespace
{
constexpr int cChunkSize = 16384;

QString withReason(const QString& text, const QString& reason)
{
    return reason.isEmpty() ? text : text + QLatin1String(": ") + reason;
}

QString describeOpenFailure(const ZipReader& reader, const QString& zipPath)
{
    if (reader.isArchive() && reader.getReason().isEmpty())
        return QStringLiteral("Error with zipfile in unzGetGlobalInfo");
    return withReason(QLatin1String("Can't open zip archive: ") + zipPath, reader.getReason());
}

// Folders on their way into an archive.
class Packing
{
public:
    Packing(ZipArchiver& archiver, const QString& baseFolder, ZipNames names, const ZipRun& run)
        : mArchiver(archiver), mBaseFolder(baseFolder), mNames(names), mRun(run), mLog(run.log)
    {
    }

    bool addDirToZip(const QString& folder)
    {
        return addEntry(folder) ? addFilesToZip(folder) : goOnWithout(folder);
    }

    bool addFilesToZip(const QString& folder)
    {
        QStringList names;
        QString reason;
        const bool isWhole = listSources(folder, names, reason);
        if (!isWhole && !leaveOut(folder, QLatin1String("not all of the folder can be read: ") + reason))
            return false;
        for (const QString& name : names) {
            if (!addBelow(folder + QLatin1Char('/') + name))
                return false;
        }
        return true;
    }

    bool addFile(const QString& path) { return addEntry(path) || goOnWithout(path); }

    // Reports what is not packed. Whether the rest is.
    bool leaveOut(const QString& path, const QString& reason)
    {
        mLog.error("ZipHelper::addFilesToZip", QStringLiteral("Left out, %1: %2").arg(reason, path));
        return goOnWithout(path);
    }

private:
    bool addBelow(const QString& path)
    {
        ZipSource source(path);
        switch (source.look()) {
            case ZipSource::Kind::File:
                return mArchiver.isOwnFile(path) || addFile(path);
            case ZipSource::Kind::Folder:
                return addDirToZip(path);
            case ZipSource::Kind::LinkToFolder:
                return leaveOut(path, QStringLiteral("a link to a folder"));
            case ZipSource::Kind::LinkToNothing:
                return leaveOut(path, QStringLiteral("a link that leads nowhere"));
            case ZipSource::Kind::Special:
                return leaveOut(path, QStringLiteral("a pipe, socket or device"));
            case ZipSource::Kind::Missing:
            case ZipSource::Kind::Unknown:
                break;
        }
        return leaveOut(path, source.getReason());
    }

    bool addEntry(const QString& path)
    {
        return mArchiver.AddFileWithIerarchy(path, mBaseFolder, ZipArchiver::cStartLevel, mNames);
    }

    // After a failure that the log knows of.
    bool goOnWithout(const QString& path)
    {
        if (mRun.leftOut == nullptr || !mArchiver.isWriting())
            return false;
        mRun.leftOut->append(path);
        return true;
    }

    ZipArchiver& mArchiver;
    const QString mBaseFolder;
    const ZipNames mNames;
    const ZipRun& mRun;
    const ZipLog mLog;
};

// One run over the entries of an archive.
class Extraction
{
public:
    Extraction(const QString& zipPath, const QString& destinationFolder, const ZipRun& run)
        : mZipPath(zipPath), mReader(zipPath), mDestination(destinationFolder), mRun(run), mLog(run.log)
    {
        mDestination.setLog(mLog);
        mOptions.chunkSize = cChunkSize;
        mOptions.keepsDates = true;
        mOptions.onWritten = [this](qint64 bytes) {
            mDone += bytes;
            return !mRun.progress || mRun.progress(mDone, mTotal);
        };
    }

    ZipExtractionOptions& getOptions() { return mOptions; }

    // Only the entries of these names are extracted.
    void select(const QStringList& names)
    {
        mIsSelecting = true;
        for (const QString& name : names)
            mNames.insert(name);
    }

    // Looks through the archive before anything is written.
    bool check()
    {
        if (!mReader.open()) {
            mLog.error("ZipHelper::doExtract", describeOpenFailure(mReader, mZipPath));
            return false;
        }
        if (!mRun.limits.allowsOverlap && mReader.hasOverlap()) {
            mLog.error("ZipHelper::doExtract",
                       QStringLiteral("Can't extract %1: entries overlap, as in an attack.").arg(mZipPath));
            return false;
        }
        ZipBudget budget(mRun.limits);
        QSet<QString> missing = mNames;
        for (bool isThere = mReader.getEntryCount() > 0 && mReader.goToFirst(); isThere;
             isThere = mReader.goToNext()) {
            const ZipEntry& entry = mReader.getEntry();
            if (!isSelected(entry))
                continue;
            missing.remove(entry.name);
            if (!budget.canTake(entry.size)) {
                reportRefusal(entry.name, QStringLiteral("it exceeds the limit"));
                return false;
            }
            budget.take(entry.size);
            mTotal += entry.size;
        }
        if (!mRun.limits.allowsMoreThanFree && mTotal > mDestination.getFreeSpace()) {
            mLog.error("ZipHelper::doExtract",
                       QStringLiteral("Can't extract %1: it needs %2 bytes, which the disk has no room for.")
                           .arg(mZipPath)
                           .arg(mTotal));
            return false;
        }
        for (const QString& name : missing)
            mLog.error("ZipHelper::doExtract", QStringLiteral("Can't find %1 in %2.").arg(name, mZipPath));
        return missing.isEmpty();
    }

    bool doExtract(ZipOnError onError)
    {
        bool isGood = true;
        const int count = mReader.getEntryCount();
        for (int index = 0; index < count; ++index) {
            if (!goTo(index))
                return false;
            if (isSelected(mReader.getEntry()) && !doExtractCurrentFile(index)) {
                isGood = false;
                if (onError == ZipOnError::Stop || mIsGivenUp)
                    return false;
            }
        }
        return isGood;
    }

private:
    bool isSelected(const ZipEntry& entry) const { return !mIsSelecting || mNames.contains(entry.name); }

    bool goTo(int index)
    {
        if (index == 0 ? mReader.goToFirst() : mReader.goToNext())
            return true;
        const QString error = QString::number(mReader.getError());
        mLog.error(
            "ZipHelper::doExtract",
            withReason(index == 0 ? QLatin1String("Error in zipfile in unzGetCurrentFileInfo: ") + error
                                  : QStringLiteral("Error with zipfile in unzGoToNextFile"),
                       mReader.getReason()));
        return false;
    }

    bool doExtractCurrentFile(int index)
    {
        const QString name = mReader.getEntry().name;
        try {
            const ZipOutcome outcome = extractEntry(mReader, index, mDestination, mOptions);
            if (outcome.isDone())
                return true;
            mIsGivenUp = outcome.failedAt == ZipOutcome::Step::GivenUp;
            report(name, outcome);
        } catch (const std::bad_alloc&) {
            mLog.error("ZipHelper::doExtractCurrentFile", QStringLiteral("Error allocating memory"));
        }
        return false;
    }

    void reportRefusal(const QString& name, const QString& reason)
    {
        mLog.error("ZipHelper::doExtract",
                   QStringLiteral("Can't extract %1 from %2: %3.").arg(name, mZipPath, reason));
    }

    // The text of the step that failed and, as it does not say which entry it was, a line that does.
    void report(const QString& name, const ZipOutcome& outcome)
    {
        using Step = ZipOutcome::Step;
        if (outcome.failedAt == Step::CheckEntry) {
            reportRefusal(name, outcome.reason);
            return;
        }
        const QMap<Step, QString> texts = {
            {Step::MakeFolder, QLatin1String("Can't create directory from the archive: ") + outcome.path},
            {Step::OpenEntry, QStringLiteral("Error with zipfile in unzOpenCurrentFilePassword")},
            {Step::MakeFile, QLatin1String("Error opening file: ") + outcome.path},
            {Step::ReadEntry, QLatin1String("Can't read from ") + mZipPath},
            {Step::WriteFile, QStringLiteral("Error in writing extracted file")},
            {Step::CloseEntry, QStringLiteral("Error with zipfile in unzCloseCurrentFile")},
            {Step::GivenUp, QStringLiteral("Extraction of %1 was cancelled.").arg(mZipPath)}};
        mLog.error("ZipHelper::doExtractCurrentFile",
                   withReason(texts.value(outcome.failedAt), outcome.reason));
        mLog.error("ZipHelper::doExtract", QStringLiteral("Can't extract %1 from %2.").arg(name, mZipPath));
    }

    const QString mZipPath;
    ZipReader mReader;
    ZipDestination mDestination;
    const ZipRun& mRun;
    ZipLog mLog;
    ZipExtractionOptions mOptions;
    QSet<QString> mNames;
    qint64 mTotal = 0;
    qint64 mDone = 0;
    bool mIsSelecting = false;
    bool mIsGivenUp = false;
};
}  // namespace

bool ZipHelper::compressItem(const QString& item, const QString& zipPath, ZipStart start,
                             const QString& password, int level, const QString& baseFolder, ZipNames names,
                             const ZipRun& run)
{
    const ZipLog log(run.log);
    if (ZipSource(item).look() == ZipSource::Kind::Missing) {
        log.error("ZipHelper::compressItem", QLatin1String("Item doesn't exist: ") + item);
        return false;
    }
    ZipArchiver archiver(zipPath);
    archiver.setLogInterface(run.log);
    return archiver.StartWriting(start, password, level) && addItem(archiver, item, baseFolder, names, run) &&
           finish(archiver, run);
}

bool ZipHelper::finish(ZipArchiver& archiver, const ZipRun& run)
{
    const bool isLeftOut = run.leftOut != nullptr && !run.leftOut->isEmpty();
    if (archiver.getAddedCount() > 0 || !isLeftOut)
        return archiver.FinishWriting();
    ZipLog(run.log).error("ZipHelper::finish", QStringLiteral("There is nothing that can be packed."));
    return false;
}

bool ZipHelper::addItem(ZipArchiver& archiver, const QString& item, const QString& baseFolder, ZipNames names,
                        const ZipRun& run)
{
    const QFileInfo info(QDir(item).absolutePath());
    const QString base = baseFolder.isEmpty() ? info.absolutePath() : baseFolder;
    Packing packing(archiver, base, names, run);
    ZipSource source(info.filePath());
    switch (source.look()) {
        case ZipSource::Kind::Folder:
        case ZipSource::Kind::LinkToFolder:
            return packing.addDirToZip(info.filePath());
        case ZipSource::Kind::Missing:
            ZipLog(run.log).error("ZipHelper::addItem", QLatin1String("Item doesn't exist: ") + item);
            return false;
        case ZipSource::Kind::Unknown:
            return packing.leaveOut(info.filePath(), source.getReason());
        default:
            return packing.addFile(info.filePath());
    }
}

bool ZipHelper::compressFolderContents(const QString& folder, const QString& zipPath, ZipStart start,
                                       const QString& password, int level, ZipNames names, const ZipRun& run)
{
    const ZipLog log(run.log);
    ZipSource source(folder);
    const ZipSource::Kind kind = source.look();
    if (kind != ZipSource::Kind::Folder && kind != ZipSource::Kind::LinkToFolder) {
        const QString line =
            kind == ZipSource::Kind::Unknown
                ? QStringLiteral("Folder can't be read: %1: %2").arg(folder, source.getReason())
                : QLatin1String("Folder doesn't exist: ") + folder;
        log.error("ZipHelper::compressFolderContents", line);
        return false;
    }
    ZipArchiver archiver(zipPath);
    archiver.setLogInterface(run.log);
    const QString base = QDir(folder).absolutePath();
    return archiver.StartWriting(start, password, level) &&
           Packing(archiver, base, names, run).addFilesToZip(base) && finish(archiver, run);
}

bool ZipHelper::extractFiles(const QString& zipPath, const QString& destinationFolder, ZipPaths paths,
                             const QString& password, ZipOnError onError, int mode, const ZipRun& run)
{
    Extraction extraction(zipPath, destinationFolder, run);
    extraction.getOptions().isFlat = paths == ZipPaths::Drop;
    extraction.getOptions().passwords = ZipPassword::getForms(password);
    extraction.getOptions().mode = mode;
    return extraction.check() && extraction.doExtract(onError);
}

bool ZipHelper::extractFiles(const QString& zipPath, const QStringList& names,
                             const QString& destinationFolder, ZipPaths paths, const QString& password,
                             int mode, const ZipRun& run)
{
    Extraction extraction(zipPath, destinationFolder, run);
    extraction.getOptions().isFlat = paths == ZipPaths::Drop;
    extraction.getOptions().passwords = ZipPassword::getForms(password);
    extraction.getOptions().mode = mode;
    extraction.select(names);
    return extraction.check() && extraction.doExtract(ZipOnError::Stop);
}

bool ZipHelper::getEntryList(const QString& zipPath, QVector<ZipEntry>& entries, const ZipRun& run)
{
    ZipReader reader(zipPath);
    const bool isOpen = reader.open();
    const int count = reader.getEntryCount();
    bool isThere = isOpen && count > 0 && reader.goToFirst();
    while (isThere) {
        entries.append(reader.getEntry());
        isThere = entries.size() < count && reader.goToNext();
    }
    if (isOpen && entries.size() == count)
        return true;
    ZipLog(run.log).error(
        "ZipHelper::getEntryList",
        isOpen ? withReason(QStringLiteral("Error with zipfile in unzGoToNextFile"), reader.getReason())
               : describeOpenFailure(reader, zipPath));
    return false;
}

qint64 ZipHelper::getDirSize(const QString& folder)
{
    qint64 size = 0;
    QDirIterator files(folder, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        size += files.fileInfo().size();
    }
    return size;
}
