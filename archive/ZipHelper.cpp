#include "archive/ZipHelper.h"

#include "archive/ZipDestination.h"
#include "archive/ZipExtraction.h"
#include "archive/ZipReader.h"

#include <QDir>
#include <QDirIterator>
#include <QMap>

#include <new>

using namespace Morvane;

namespace
{
constexpr int cChunkSize = 16384;
constexpr QDir::Filters cEverything =
    QDir::Files | QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool addFilesToZip(ZipArchiver& archiver, const QString& folder, const QString& baseFolder, ZipNames names,
                   const ZipLog& log);

bool addDirToZip(ZipArchiver& archiver, const QString& folder, const QString& baseFolder, ZipNames names,
                 const ZipLog& log)
{
    return archiver.AddFileWithIerarchy(folder, baseFolder, ZipArchiver::cStartLevel, names) &&
           addFilesToZip(archiver, folder, baseFolder, names, log);
}

bool addFilesToZip(ZipArchiver& archiver, const QString& folder, const QString& baseFolder, ZipNames names,
                   const ZipLog& log)
{
    for (const QFileInfo& item : QDir(folder).entryInfoList(cEverything, QDir::Name)) {
        const QString path = item.filePath();
        bool isAdded = true;
        if (item.isDir() && item.isSymLink())
            log.debug("ZipHelper::addFilesToZip", QLatin1String("Left out, a link to a folder: ") + path);
        else if (item.isDir())
            isAdded = addDirToZip(archiver, path, baseFolder, names, log);
        else if (!archiver.isOwnFile(path))
            isAdded = archiver.AddFileWithIerarchy(path, baseFolder, ZipArchiver::cStartLevel, names);
        if (!isAdded)
            return false;
    }
    return true;
}

// One run over the entries of an archive.
class Extraction
{
public:
    Extraction(const QString& zipPath, const QString& destinationFolder, const ZipRun& run)
        : mZipPath(zipPath), mReader(zipPath), mDestination(destinationFolder), mRun(run), mLog(run.log)
    {
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
            mLog.error("ZipHelper::doExtract", mReader.isArchive()
                                                   ? QStringLiteral("Error with zipfile in unzGetGlobalInfo")
                                                   : QLatin1String("Can't open zip archive: ") + mZipPath);
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
        mLog.error("ZipHelper::doExtract",
                   index == 0 ? QLatin1String("Error in zipfile in unzGetCurrentFileInfo: ") + error
                              : QStringLiteral("Error with zipfile in unzGoToNextFile"));
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
        const QString reason = outcome.reason.isEmpty() ? QString() : QLatin1String(": ") + outcome.reason;
        mLog.error("ZipHelper::doExtractCurrentFile", texts.value(outcome.failedAt) + reason);
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
    if (!QFileInfo::exists(item)) {
        log.error("ZipHelper::compressItem", QLatin1String("Item doesn't exist: ") + item);
        return false;
    }
    ZipArchiver archiver(zipPath);
    archiver.setLogInterface(run.log);
    return archiver.StartWriting(start, password, level) && addItem(archiver, item, baseFolder, names, run) &&
           archiver.FinishWriting();
}

bool ZipHelper::addItem(ZipArchiver& archiver, const QString& item, const QString& baseFolder, ZipNames names,
                        const ZipRun& run)
{
    const QFileInfo info(QDir(item).absolutePath());
    const QString base = baseFolder.isEmpty() ? info.absolutePath() : baseFolder;
    if (info.isDir())
        return addDirToZip(archiver, info.filePath(), base, names, ZipLog(run.log));
    return archiver.AddFileWithIerarchy(info.filePath(), base, ZipArchiver::cStartLevel, names);
}

bool ZipHelper::compressFolderContents(const QString& folder, const QString& zipPath, ZipStart start,
                                       const QString& password, int level, ZipNames names, const ZipRun& run)
{
    const ZipLog log(run.log);
    if (!QFileInfo(folder).isDir()) {
        log.error("ZipHelper::compressFolderContents", QLatin1String("Folder doesn't exist: ") + folder);
        return false;
    }
    ZipArchiver archiver(zipPath);
    archiver.setLogInterface(run.log);
    const QString base = QDir(folder).absolutePath();
    return archiver.StartWriting(start, password, level) && addFilesToZip(archiver, base, base, names, log) &&
           archiver.FinishWriting();
}

bool ZipHelper::extractFiles(const QString& zipPath, const QString& destinationFolder, ZipPaths paths,
                             const QString& password, ZipOnError onError, int mode, const ZipRun& run)
{
    Extraction extraction(zipPath, destinationFolder, run);
    extraction.getOptions().isFlat = paths == ZipPaths::Drop;
    extraction.getOptions().password = password.toLatin1();
    extraction.getOptions().mode = mode;
    return extraction.check() && extraction.doExtract(onError);
}

bool ZipHelper::extractFiles(const QString& zipPath, const QStringList& names,
                             const QString& destinationFolder, ZipPaths paths, const QString& password,
                             int mode, const ZipRun& run)
{
    Extraction extraction(zipPath, destinationFolder, run);
    extraction.getOptions().isFlat = paths == ZipPaths::Drop;
    extraction.getOptions().password = password.toLatin1();
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
    ZipLog(run.log).error("ZipHelper::getEntryList",
                          isOpen ? QStringLiteral("Error with zipfile in unzGoToNextFile")
                                 : QLatin1String("Can't open zip archive: ") + zipPath);
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
