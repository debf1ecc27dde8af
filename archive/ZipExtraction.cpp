#include "archive/ZipExtraction.h"

#include "archive/ZipDestination.h"
#include "archive/ZipEntryPath.h"
#include "archive/ZipReader.h"
#include "foundation/system/GSystemError.h"

#include <algorithm>

namespace Morvane
{
namespace
{
using Step = ZipOutcome::Step;

constexpr int cGroupAndOthersWrite = 022;
constexpr int cOwnerWrites = 0200;
constexpr int cMemoryChunkSize = 64 * 1024;
constexpr qint64 cFirstMemory = 1024 * 1024;
constexpr qint64 cMostMemory = 1024 * 1024 * 1024;  // what one byte array can be trusted to hold

QString explain(ZipReader::OpenResult result, const ZipReader& reader)
{
    switch (result) {
        case ZipReader::OpenResult::NeedsPassword:
            return QStringLiteral("it is encrypted and needs a password");
        case ZipReader::OpenResult::WrongPassword:
            return QStringLiteral("the password is wrong");
        case ZipReader::OpenResult::Unsupported:
            return QStringLiteral("its compression or encryption is not supported");
        case ZipReader::OpenResult::Done:
        case ZipReader::OpenResult::Damaged:
            break;
    }
    return reader.getReason();
}

int getRights(const ZipEntry& entry, const ZipExtractionOptions& options)
{
    return (entry.getMode() & ~cGroupAndOthersWrite) | options.mode;
}

// Whether another form of the password may do better: the check byte lets one wrong one of 128 pass.
bool canBeByPassword(const ZipReader& reader, const ZipOutcome& outcome)
{
    const bool isFromContent = outcome.failedAt == Step::OpenEntry || outcome.failedAt == Step::ReadEntry ||
                               outcome.failedAt == Step::CloseEntry;
    return reader.getEntry().isEncrypted() && isFromContent;
}

// Does the work with one form of the password after the other, until one fits. Of several failures, the one
// that came farthest is told.
template <typename Work>
ZipOutcome tryPasswords(const ZipReader& reader, const QVector<QByteArray>& passwords, const Work& work)
{
    ZipOutcome told;
    for (const QByteArray& password : passwords) {
        const ZipOutcome outcome = work(password);
        if (!canBeByPassword(reader, outcome))
            return outcome;
        if (told.failedAt < outcome.failedAt)
            told = outcome;
    }
    if (told.failedAt != Step::OpenEntry && told.reason.isEmpty())
        told.reason = QStringLiteral("the password may be wrong");
    return told;
}

// Copies the content of the open entry to the file.
Step copyContent(ZipReader& reader, ZipFile& file, const ZipExtractionOptions& options, qint64& done,
                 QString& reason)
{
    QByteArray chunk(options.chunkSize, Qt::Uninitialized);
    for (;;) {
        const int count = reader.readEntry(chunk.data(), chunk.size());
        if (count < 0)
            return Step::ReadEntry;
        if (count == 0)
            return Step::Done;
        if (!file.write(chunk.constData(), count)) {
            reason = GetReasonText(GetLastSystemError());
            return Step::WriteFile;
        }
        done += count;
        if (options.onWritten && !options.onWritten(count))
            return Step::GivenUp;
    }
}

Step fillFile(ZipReader& reader, ZipFile& file, const ZipExtractionOptions& options, qint64& done,
              QString& reason)
{
    const ZipEntry& entry = reader.getEntry();
    const Step step = copyContent(reader, file, options, done, reason);
    const bool isWhole = reader.closeEntry();
    if (step != Step::Done)
        return step;
    if (!isWhole)
        return Step::CloseEntry;
    const QDateTime modified = entry.getModified();
    const bool isDated = !options.keepsDates || !modified.isValid() || file.setModified(modified);
    const bool isReadOnly = entry.isReadOnly() && (options.mode & cOwnerWrites) == 0;
    const bool hasRights = file.addMode(getRights(entry, options)) && (!isReadOnly || file.setReadOnly());
    if (isDated && hasRights)
        return Step::Done;
    reason = GetReasonText(GetLastSystemError());
    return Step::WriteFile;
}

ZipOutcome extractOnce(ZipReader& reader, int entryIndex, ZipDestination& destination,
                       const QStringList& parts, const QByteArray& password,
                       const ZipExtractionOptions& options, qint64& done)
{
    const QString path = destination.getPath(parts);
    const QStringList folder = parts.mid(0, parts.size() - 1);
    if (!destination.makeFolder(folder))
        return {Step::MakeFolder, destination.getPath(folder), destination.getReason()};
    const ZipReader::OpenResult opened = reader.openEntry(password);
    if (opened != ZipReader::OpenResult::Done)
        return {Step::OpenEntry, path, explain(opened, reader)};
    ZipTarget target(destination);
    const ZipTarget::Result begun = target.begin(parts.last(), entryIndex);
    if (begun != ZipTarget::Result::Done) {
        static_cast<void>(reader.closeEntry());  // none of it was read
        if (begun == ZipTarget::Result::TakenByOther)
            return {Step::CheckEntry, path, QStringLiteral("another entry has the same name")};
        return {Step::MakeFile, path, destination.getReason()};
    }
    QString reason;
    const Step step = fillFile(reader, target.getFile(), options, done, reason);
    if (step != Step::Done)
        return {step, path, reason.isEmpty() ? reader.getReason() : reason};
    if (!target.commit())
        return {Step::WriteFile, path, destination.getReason()};
    return {Step::Done, path, {}};
}

ZipOutcome extractFile(ZipReader& reader, int entryIndex, ZipDestination& destination,
                       const QStringList& parts, const ZipExtractionOptions& options)
{
    qint64 done = 0;
    return tryPasswords(reader, options.passwords, [&](const QByteArray& password) {
        if (done > 0 && options.onWritten)
            options.onWritten(-done);
        done = 0;
        return extractOnce(reader, entryIndex, destination, parts, password, options, done);
    });
}

ZipOutcome readContent(ZipReader& reader, const QByteArray& password, QByteArray& content)
{
    const ZipReader::OpenResult opened = reader.openEntry(password);
    if (opened != ZipReader::OpenResult::Done)
        return {Step::OpenEntry, {}, explain(opened, reader)};
    // What the archive declares sets aside little memory; the rest follows what really comes.
    QByteArray bytes;
    bytes.reserve(static_cast<int>(std::min<qint64>(reader.getEntry().size, cFirstMemory)) +
                  cMemoryChunkSize);
    int count = 0;
    do {
        const int size = bytes.size();
        bytes.resize(size + cMemoryChunkSize);
        count = reader.readEntry(bytes.data() + size, cMemoryChunkSize);
        bytes.resize(size + std::max(count, 0));
    } while (count > 0);
    if (!reader.closeEntry())
        return {count < 0 ? Step::ReadEntry : Step::CloseEntry, {}, reader.getReason()};
    content = bytes;
    return {};
}

// Reads the content and lets go of it.
ZipOutcome passContent(ZipReader& reader, const QByteArray& password,
                       const std::function<bool(qint64 bytes)>& onRead)
{
    const ZipReader::OpenResult opened = reader.openEntry(password);
    if (opened != ZipReader::OpenResult::Done)
        return {Step::OpenEntry, {}, explain(opened, reader)};
    QByteArray bytes(cMemoryChunkSize, Qt::Uninitialized);
    int count = 0;
    do {
        count = reader.readEntry(bytes.data(), bytes.size());
        if (count > 0 && onRead && !onRead(count)) {
            static_cast<void>(reader.closeEntry());  // the rest is not wanted
            return {Step::GivenUp, {}, {}};
        }
    } while (count > 0);
    if (!reader.closeEntry())
        return {count < 0 ? Step::ReadEntry : Step::CloseEntry, {}, reader.getReason()};
    return {};
}

QStringList findTargetOf(const ZipEntryPath& path, const ZipEntry& entry, bool isFlat)
{
    if (!path.isSafe() || (isFlat && entry.isFolder()))
        return {};
    return isFlat ? QStringList(path.parts.mid(path.parts.size() - 1)) : path.parts;
}
}  // namespace

ZipOutcome extractEntry(ZipReader& reader, int entryIndex, ZipDestination& destination,
                        const ZipExtractionOptions& options)
{
    const ZipEntry& entry = reader.getEntry();
    const ZipEntryPath path(entry.name);
    if (!path.isSafe())
        return {Step::CheckEntry, {}, path.refusal};
    if (entry.isLink())
        return {Step::CheckEntry, {}, QStringLiteral("it is a symbolic link")};
    const QStringList parts = findTargetOf(path, entry, options.isFlat);
    if (entry.isFolder()) {
        const bool isMade = options.isFlat || destination.makeFolder(parts, getRights(entry, options));
        return {isMade ? Step::Done : Step::MakeFolder, destination.getPath(parts),
                isMade ? QString() : destination.getReason()};
    }
    if (parts.isEmpty())
        return {Step::CheckEntry, {}, QStringLiteral("it has no name")};
    return extractFile(reader, entryIndex, destination, parts, options);
}

QStringList findTarget(const ZipEntry& entry, bool isFlat)
{
    return findTargetOf(ZipEntryPath(entry.name), entry, isFlat);
}

ZipOutcome readEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords, qint64 limit,
                            QByteArray& content)
{
    if (reader.getEntry().size > std::min(limit, cMostMemory))
        return {Step::CheckEntry, {}, QStringLiteral("it is larger than the limit")};
    return tryPasswords(reader, passwords,
                        [&](const QByteArray& password) { return readContent(reader, password, content); });
}

ZipOutcome checkEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords,
                             const std::function<bool(qint64 bytes)>& onRead)
{
    return tryPasswords(reader, passwords,
                        [&](const QByteArray& password) { return passContent(reader, password, onRead); });
}
}  // namespace Morvane
