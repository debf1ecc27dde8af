#include "archive/ZipArchive.h"

#include "archive/ZipEntryPath.h"
#include "archive/ZipPassword.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace Morvane
{
static constexpr qint64 cDefaultMemoryLimit = 64 * 1024 * 1024;
static constexpr int cChunkSize = 4096;

ZipArchive::ZipArchive(const QString& path) : ZipArchive(std::make_unique<QFile>(path), path) {}

ZipArchive::ZipArchive(std::unique_ptr<QIODevice> device, const QString& name)
    : mPath(name),
      mReader(std::make_unique<ZipReader>(std::move(device))),
      mLastError(QStringLiteral("No last error, the user should not get this message.")),
      mMemoryLimit(cDefaultMemoryLimit)
{
}

int ZipArchive::StartIterate()
{
    mIndex = 0;
    mHasFailed = false;
    mBudget = ZipBudget(mLimits);
    mIsLimited = false;
    if (mDestination != nullptr)
        mDestination->startAnew();
    const bool isOpen = mReader->open();
    mCount = isOpen ? mReader->getEntryCount() : 0;
    if (!isOpen || (mCount > 0 && !mReader->goToFirst()))
        reportEnd("ZipArchive::StartIterate", withReason(QLatin1String("Can't open zip archive: ") + mPath));
    return AtEnd() ? 0 : mCount;
}

bool ZipArchive::Next()
{
    mHasFailed = false;
    if (AtEnd())
        return false;
    ++mIndex;
    if (AtEnd())
        return false;
    if (mReader->goToNext())
        return true;
    reportEnd("ZipArchive::Next", withReason(QStringLiteral("Can't read from %1").arg(mPath)));
    return false;
}

bool ZipArchive::ExtractCurrentFile(const QString& destinationFolder, const QString& password, int mode)
{
    static const char cSource[] = "ZipArchive::ExtractCurrentFile";
    if (!hasEntry(cSource))
        return false;
    const ZipEntry& entry = getCurrentEntry();
    ZipDestination& destination = getDestination(destinationFolder);
    if (!isWithinReason(destination))
        return fail(
            cSource,
            describe({ZipOutcome::Step::CheckEntry, {}, QStringLiteral("entries overlap, as in an attack")}));
    if (!mBudget.canTake(entry.size))
        return fail(cSource,
                    describe({ZipOutcome::Step::CheckEntry, {}, QStringLiteral("it exceeds the limit")}));
    ZipExtractionOptions options;
    options.passwords = ZipPassword::getForms(password);
    options.mode = mode;
    options.chunkSize = cChunkSize;
    options.onWritten = [this](qint64 bytes) {
        if (mProgress)
            mProgress(bytes);
        return !mIsCancelled;
    };
    const ZipOutcome outcome = extractEntry(*mReader, mIndex, destination, options);
    destination.closeFolders();
    if (!outcome.isDone())
        return fail(cSource, describe(outcome));
    mBudget.take(entry.size);
    return true;
}

// Once for a run from StartIterate() on.
bool ZipArchive::isWithinReason(ZipDestination& destination)
{
    if (mIsLimited)
        return mIsReasonable;
    mIsLimited = true;
    mIsReasonable = mLimits.allowsOverlap || !mReader->hasOverlap();
    ZipLimits limits = mLimits;
    if (!limits.allowsMoreThanFree)
        limits.totalBytes = std::min(limits.totalBytes, destination.getFreeSpace());
    mBudget = ZipBudget(limits);
    return mIsReasonable;
}

QByteArray ZipArchive::ExtractCurrentToMemory(const QString& password)
{
    static const char cSource[] = "ZipArchive::ExtractCurrentToMemory";
    if (!hasEntry(cSource))
        return {};
    QByteArray content;
    const ZipOutcome outcome =
        readEntryContent(*mReader, ZipPassword::getForms(password), mMemoryLimit, content);
    if (!outcome.isDone()) {
        fail(cSource, describe(outcome));
        return {};
    }
    return content;
}

bool ZipArchive::CheckCurrentFile(const QString& password, const std::function<bool(qint64 bytes)>& onRead)
{
    static const char cSource[] = "ZipArchive::CheckCurrentFile";
    if (!hasEntry(cSource))
        return false;
    if (getCurrentEntry().isFolder())
        return true;
    const ZipOutcome outcome = checkEntryContent(*mReader, ZipPassword::getForms(password), onRead);
    return outcome.isDone() || fail(cSource, describe(outcome));
}

QByteArray ZipArchive::ExtractToMemory(const QString& pattern, const QString& password)
{
    static const char cSource[] = "ZipArchive::ExtractToMemory";
    const QRegularExpression expression(QLatin1String("\\A(?:") + pattern + QLatin1String(")\\z"));
    if (!expression.isValid()) {
        fail(cSource, QStringLiteral("Can't search by %1: %2.").arg(pattern, expression.errorString()));
        return {};
    }
    for (StartIterate(); !AtEnd(); Next()) {
        if (!getCurrentEntry().isFolder() && expression.match(GetCurrentFileName()).hasMatch())
            return ExtractCurrentToMemory(password);
    }
    if (!mHasFailed)
        fail(cSource, QStringLiteral("Can't find %1 in %2.").arg(pattern, mPath));
    return {};
}

QStringList ZipArchive::GetFileList()
{
    if (mCount == 0 && !mHasFailed)
        StartIterate();
    QStringList names;
    for (bool isThere = mCount > 0 && mReader->goToFirst(); isThere;
         isThere = names.size() < mCount && mReader->goToNext())
        names.append(mReader->getEntry().name);
    if (names.size() < mCount)
        fail("ZipArchive::GetFileList", QStringLiteral("Can't read from %1").arg(mPath));
    goBackToCurrent();
    return names;
}

void ZipArchive::goBackToCurrent()
{
    if (AtEnd())
        return;
    bool isThere = mReader->goToFirst();
    for (int index = 0; isThere && index < mIndex; ++index)
        isThere = mReader->goToNext();
}

void ZipArchive::setLimits(const ZipLimits& limits)
{
    mLimits = limits;
    mIsLimited = false;
    mBudget = ZipBudget(limits);
}

void ZipArchive::removeMadeFolders(const QString& destinationFolder)
{
    ZipDestination& destination = getDestination(destinationFolder);
    destination.removeMadeFolders();
    destination.closeFolders();
}

bool ZipArchive::removeExtracted(const QString& destinationFolder, const QString& entryName)
{
    const ZipEntryPath path(entryName);
    ZipDestination& destination = getDestination(destinationFolder);
    const bool isRemoved = path.isSafe() && destination.remove(path.parts);
    destination.closeFolders();
    return isRemoved;
}

// One destination is remembered, so that two entries of one archive can't take the same file.
ZipDestination& ZipArchive::getDestination(const QString& folder)
{
    if (mDestination == nullptr || mDestinationFolder != folder) {
        mDestination = std::make_unique<ZipDestination>(folder);
        mDestinationFolder = folder;
        mDestination->setLog(mLog);
        mDestination->setCancelHook([this] { return mIsCancelled.load(); });
    }
    return *mDestination;
}

bool ZipArchive::hasEntry(const char* source)
{
    if (mCount == 0 && !mHasFailed)
        StartIterate();
    if (mIsCancelled)
        return fail(source, QStringLiteral("Extraction of %1 was cancelled.").arg(mPath));
    if (AtEnd())
        return fail(source, QStringLiteral("Can't read from %1").arg(mPath));
    return true;
}

QString ZipArchive::describe(const ZipOutcome& outcome) const
{
    const QString text = describeStep(outcome);
    const bool saysWhy = outcome.reason.isEmpty() || outcome.failedAt == ZipOutcome::Step::CheckEntry ||
                         outcome.failedAt == ZipOutcome::Step::OpenEntry;
    if (saysWhy)
        return text;
    return text + QLatin1String(text.endsWith(QLatin1Char('.')) ? " " : ": ") + outcome.reason;
}

QString ZipArchive::describeStep(const ZipOutcome& outcome) const
{
    const QString name = GetCurrentFileName();
    switch (outcome.failedAt) {
        case ZipOutcome::Step::CheckEntry:
            return QStringLiteral("Can't extract %1 from %2: %3.").arg(name, mPath, outcome.reason);
        case ZipOutcome::Step::MakeFolder:
            return QStringLiteral("Can't create folder %1.").arg(outcome.path);
        case ZipOutcome::Step::OpenEntry:
            if (!outcome.reason.isEmpty())
                return QStringLiteral("Can't read file %1 from %2: %3.").arg(name, mPath, outcome.reason);
            return QStringLiteral("Can't read file %1 from %2. %2 is probably corrupt.").arg(name, mPath);
        case ZipOutcome::Step::MakeFile:
            return QStringLiteral("Can't write in %1.").arg(outcome.path);
        case ZipOutcome::Step::ReadEntry:
            return QStringLiteral("Can't read from %1").arg(mPath);
        case ZipOutcome::Step::WriteFile:
            return QStringLiteral("Can't write to %1.").arg(outcome.path);
        case ZipOutcome::Step::CloseEntry:
            return QStringLiteral("Can't close current file %1.").arg(name);
        case ZipOutcome::Step::GivenUp:
            return QStringLiteral("Extraction of %1 was cancelled.").arg(mPath);
        case ZipOutcome::Step::Done:
            break;
    }
    return {};
}

QString ZipArchive::withReason(const QString& text) const
{
    const QString reason = mReader->getReason();
    return reason.isEmpty() ? text : text + QLatin1String(": ") + reason;
}

void ZipArchive::reportEnd(const char* source, const QString& text)
{
    SetAtEnd();
    mHasFailed = true;
    fail(source, text);
}

bool ZipArchive::fail(const char* source, const QString& text)
{
    mLastError = text;
    mLog.error(source, text);
    return false;
}
}  // namespace Morvane
