#include "archive/ZipArchiver.h"

#include "archive/ZipCrc.h"
#include "archive/ZipEntry.h"
#include "archive/ZipInput.h"
#include "archive/ZipName.h"
#include "archive/ZipOutput.h"
#include "archive/ZipPassword.h"
#include "archive/ZipReader.h"
#include "archive/ZipSource.h"
#include "foundation/core/GException.h"
#include "foundation/system/GDurableFile.h"

#include <QDir>
#include <QFileInfo>
#include <QtEndian>

#include <quazip/zip.h>
#include <zlib.h>

#include <algorithm>

namespace Morvane
{
static constexpr int cChunkSize = 64 * 1024;
static constexpr int cMethodStored = 0;
static constexpr int cMethodDeflated = 8;
static constexpr int cWindowBits = -15;
static constexpr int cMemoryLevel = 8;
static constexpr int cMaximumFieldSize = 65535;
static constexpr int cZip64RecordSize = 20;
static constexpr int cLocalVersionOffset = 4;
static constexpr int cRecordSize = 46;  // of the directory, without name, extra field and comment
static constexpr quint32 cRecordMark = 0x02014b50;
static constexpr uint32_t cDosFolder = 0x10;
static constexpr uint32_t cDosReadOnly = 0x01;
static constexpr uint16_t cVersion = 20;
static constexpr uint16_t cLargeVersion = 45;  // entries with 64-bit numbers
static constexpr uLong cFlagUtf8 = 0x0800;

// What an entry can have at the most before its sizes or its place may need more than 32 bits: compression
// can add a little to content that does not compress.
static constexpr qint64 cSmallSize = 0xffffffff - 16 * 1024 * 1024;

struct ZipArchiver::Entry
{
    QString sourcePath;
    QByteArray rawName;
    QByteArray nameField;
    QByteArray password;
    qint64 size = 0;
    uint32_t crc = 0;
    uint32_t dosTime = 0;
    uint32_t attributes = 0;
    uint16_t madeBy = 0;
    uLong flags = 0;
    int level = 0;
    bool isZip64 = false;
};

namespace
{
// The name as it stands in the archive. Empty for one that would not be extracted again.
QString makeSafeName(const QString& name)
{
    const QString clean = QDir::cleanPath(QString(name).replace(QLatin1Char('\\'), QLatin1Char('/')));
    const bool isInside = clean != QLatin1String("..") && !clean.startsWith(QLatin1String("../")) &&
                          !clean.startsWith(QLatin1Char('/'));
    return isInside && clean != QLatin1String(".") && !clean.contains(QChar::Null) ? clean : QString();
}

uint32_t makeDosAttributes(const ZipSource& source)
{
    return (source.isFolder() ? cDosFolder : 0) | (source.isReadOnly() ? cDosReadOnly : 0);
}

// The path without links in its folders: what is above a folder is found by the system, not by the text.
QString makePath(const QString& path)
{
    const QFileInfo info(path);
    const QString folder = info.dir().canonicalPath();
    if (info.exists())
        return info.canonicalFilePath();
    return folder.isEmpty() ? info.absoluteFilePath() : QDir(folder).filePath(info.fileName());
}

// The library asks readers of a large entry for version 6.3, and unzip refuses that; and it forgets whose
// attributes the entry has.
void correctDirectory(char* bytes, int size, int firstNew)
{
    constexpr int cLibraryVersion = 63;
    const auto getNumber = [bytes](int offset) { return qFromLittleEndian<quint16>(bytes + offset); };
    const auto isRecord = [&](int offset) {
        return offset + cRecordSize <= size && qFromLittleEndian<quint32>(bytes + offset) == cRecordMark;
    };
    int offset = 0;
    for (int index = 0; isRecord(offset); ++index) {
        if (index >= firstNew && getNumber(offset + 6) == cLibraryVersion) {
            qToLittleEndian<quint16>(cLargeVersion | getMadeBy(), bytes + offset + 4);
            qToLittleEndian<quint16>(cLargeVersion, bytes + offset + 6);
        }
        offset += cRecordSize + getNumber(offset + 28) + getNumber(offset + 30) + getNumber(offset + 32);
    }
}

QString withReason(const QString& text, const QString& reason)
{
    return reason.isEmpty() ? text : text + QLatin1String(": ") + reason;
}
}  // namespace

void ZipArchiver::Closer::operator()(void* handle) const
{
    zipClose(handle, nullptr);
}

ZipArchiver::ZipArchiver(const QString& path) : mPath(makePath(path)) {}

ZipArchiver::~ZipArchiver()
{
    drop();
}

bool ZipArchiver::StartWriting(ZipStart start, const QString& password, int level)
{
    static const char cSource[] = "ZipArchiver::StartWriting";
    const QString failure = QLatin1String("Error opening file: ") + mPath;
    if (mFile != nullptr || level < 0 || level > cBestLevel)
        return fail(cSource, failure);
    QString reason;
    if (!ZipPassword::encode(password, mPassword, reason))
        return fail(cSource, withReason(failure, reason));
    mLevel = level;
    mNames.clear();
    mComment.clear();
    mAddedCount = 0;
    mOldCount = 0;
    mHasLarge = false;
    try {
        mFile = std::make_unique<GDurableFile>(GPathName(mPath));
    } catch (const GException& error) {
        return fail(cSource, withReason(failure, error.GetDescription()));
    }
    mOutput = std::make_unique<ZipOutput>(*mFile);
    if (openArchive(start))
        return true;
    reason = mOutput->getReason();
    if (reason.isEmpty() && mOld != nullptr)
        reason = mOld->getReason();
    drop();
    return fail(cSource, withReason(failure, reason));
}

bool ZipArchiver::openArchive(ZipStart start)
{
    if (start == ZipStart::Append && ZipSource(mPath).look() != ZipSource::Kind::Missing) {
        mOld = std::make_unique<ZipReader>(mPath);
        if (!copyOldEntries())
            return false;
    }
    const bool hasEntries = mOld != nullptr && mOld->getEntryCount() > 0;
    mHandle.reset(hasEntries ? mOutput->append(mOld->getInput()) : mOutput->create());
    if (mHandle == nullptr || (mOld != nullptr && !mOld->getReason().isEmpty()))
        return false;
    // What the library needs of the old archive it has read. Whoever holds a file open is in the way of its
    // replacement on Windows.
    mOld.reset();
    // Sizes go into the entry's header, where every reader finds them.
    zipClearFlags(mHandle.get(), ZIP_WRITE_DATA_DESCRIPTOR);
    return true;
}

// All that stands before the directory; that is written anew, with the new entries in it.
bool ZipArchiver::copyOldEntries()
{
    bool isReadable = mOld->open();
    for (int index = 0; isReadable && index < mOld->getEntryCount(); ++index) {
        isReadable = index == 0 ? mOld->goToFirst() : mOld->goToNext();
        mNames.insert(mOld->getEntry().name);
    }
    if (!isReadable)
        return false;
    mOldCount = mOld->getEntryCount();
    mComment = mOld->getDirectory().comment;
    QByteArray chunk(cChunkSize, Qt::Uninitialized);
    const qint64 end = mOld->getEntryCount() > 0 ? mOld->getDirectory().start : 0;
    for (qint64 offset = 0; offset < end;) {
        const int size = static_cast<int>(std::min<qint64>(end - offset, chunk.size()));
        if (!goesOn(0) || mOld->getInput().readAt(offset, chunk.data(), size) != size ||
            !mOutput->write(chunk.constData(), size))
            return false;
        offset += size;
    }
    return true;
}

bool ZipArchiver::AddFile(const QString& sourcePath, const QString& nameInArchive, int level, ZipNames names,
                          const QString& password)
{
    static const char cSource[] = "ZipArchiver::AddFile";
    const QString failure = QLatin1String("Error in opening file in zipfile: ") + nameInArchive;
    ZipSource source(sourcePath);
    const ZipSource::Kind kind = source.look();
    const bool isFolder = kind == ZipSource::Kind::Folder || kind == ZipSource::Kind::LinkToFolder;
    Entry entry;
    if (mHandle == nullptr)
        return fail(cSource, failure);
    entry.level = isFolder ? 0 : (level == cStartLevel ? mLevel : level);
    if (entry.level < 0 || entry.level > cBestLevel)
        return fail(cSource, failure);
    if (!isFolder && kind != ZipSource::Kind::File)
        return fail(cSource, withReason(QLatin1String("Error in opening file for reading: ") + sourcePath,
                                        source.getReason()));
    QString reason;
    if (!isFolder && !ZipPassword::encode(password, entry.password, reason))
        return fail(cSource, withReason(failure, reason));
    if (!isFolder && password.isEmpty())
        entry.password = mPassword;
    if (!isFolder && !openSource(source, entry))
        return false;
    if (!prepareEntry(source, nameInArchive, names, entry))
        return fail(cSource, failure);
    return writeEntry(source, entry) && (isFolder || checkSource(source, entry));
}

// Reads the source once, for its checksum.
bool ZipArchiver::openSource(ZipSource& source, Entry& entry)
{
    if (!source.open())
        return fail("ZipArchiver::AddFile",
                    withReason(QLatin1String("Error in opening file for reading: ") + source.getPath(),
                               source.getReason()));
    const bool isRead = getFileCrc(source, entry.crc, entry.size, [this] { return goesOn(0); });
    if (!goesOn(0))
        return giveUp(QStringLiteral("The packing was stopped."));
    if (!isRead || !source.rewind())
        return fail(
            "ZipArchiver::AddFile",
            withReason(QLatin1String("Error in reading file: ") + source.getPath(), source.getReason()));
    return true;
}

bool ZipArchiver::writeEntry(ZipSource& source, const Entry& entry)
{
    if (!openEntry(entry))
        return giveUp(QLatin1String("Error in opening file in zipfile: ") + entry.sourcePath);
    if (!source.isFolder() && !addContent(source, entry))
        return false;
    if (zipCloseFileInZip(mHandle.get()) != ZIP_OK || mOutput->hasFailed())
        return giveUp(QLatin1String("Error in writing file in the zipfile: ") + entry.sourcePath);
    ++mAddedCount;
    return true;
}

// What the archive has got is whole in itself, and perhaps not what the file is now.
bool ZipArchiver::checkSource(ZipSource& source, const Entry& entry)
{
    if (!source.hasChanged())
        return true;
    if (!source.getReason().isEmpty())
        return fail(
            "ZipArchiver::AddFile",
            withReason(QLatin1String("Error in reading file: ") + entry.sourcePath, source.getReason()));
    return fail(
        "ZipArchiver::AddFile",
        QStringLiteral("Error in reading file: %1: it changed while it was packed; the archive has the "
                       "%2 bytes that it had at first")
            .arg(entry.sourcePath)
            .arg(entry.size));
}

bool ZipArchiver::AddFileWithIerarchy(const QString& sourcePath, const QString& baseFolder, int level,
                                      ZipNames names)
{
    const QString base = QFileInfo(baseFolder).absoluteFilePath();
    const QString name = QDir(base).relativeFilePath(QFileInfo(sourcePath).absoluteFilePath());
    return AddFile(sourcePath, name, level, names, QString());
}

bool ZipArchiver::prepareEntry(const ZipSource& source, const QString& nameInArchive, ZipNames names,
                               Entry& entry)
{
    QString name = makeSafeName(nameInArchive);
    if (name.isEmpty())
        return false;
    if (source.isFolder())
        name += QLatin1Char('/');
    if (mNames.contains(name))
        return false;
    const bool isLarge = entry.size > cSmallSize || mOutput->getPosition() > cSmallSize;
    const bool isPlain = names == ZipNames::Plain || isLarge;
    entry.sourcePath = source.getPath();
    entry.rawName = isPlain ? name.toUtf8() : ZipName::encodeZipName(name);
    entry.nameField = isPlain ? QByteArray() : ZipName::createExtraField(name);
    entry.flags = isPlain ? cFlagUtf8 : 0;
    entry.isZip64 = isLarge || (!isPlain && !source.isFolder());
    entry.dosTime = makeDosTime(source.getModified());
    // Attributes of DOS say that the name is in the OEM code page, those of Unix keep the rights. A name in
    // ASCII or UTF-8 does not need the first.
    const bool isOemName = !isPlain && entry.rawName != name.toUtf8();
    entry.attributes = makeDosAttributes(source) | (isOemName ? 0 : source.getUnixAttributes());
    entry.madeBy = static_cast<uint16_t>(cVersion | (isOemName ? 0 : getMadeBy()));
    if (entry.rawName.size() > cMaximumFieldSize ||
        entry.nameField.size() + cZip64RecordSize > cMaximumFieldSize)
        return false;
    mNames.insert(name);
    mHasLarge = mHasLarge || isLarge;
    return true;
}

bool ZipArchiver::openEntry(const Entry& entry)
{
    zip_fileinfo info{};
    info.dosDate = entry.dosTime;
    info.external_fa = entry.attributes;
    // The library takes a checksum of 0 for one that is not known, and puts another check byte in its place
    // than readers expect. Only the upper half counts, so 1 says 0.
    const uLong crc = entry.crc == 0 ? 1 : entry.crc;
    const uInt fieldSize = static_cast<uInt>(entry.nameField.size());
    const qint64 header = mOutput->getPosition();
    const int error = zipOpenNewFileInZip4_64(
        mHandle.get(), entry.rawName.constData(), &info, entry.nameField.constData(), fieldSize,
        entry.nameField.constData(), fieldSize, nullptr, entry.level > 0 ? cMethodDeflated : cMethodStored,
        entry.level, 0, cWindowBits, cMemoryLevel, Z_DEFAULT_STRATEGY,
        entry.password.isEmpty() ? nullptr : entry.password.constData(), crc, entry.madeBy, entry.flags,
        entry.isZip64 ? 1 : 0);
    // For a name in UTF-8 the library asks readers for version 6.3, which few say they are.
    mOutput->patch(header + cLocalVersionOffset, entry.isZip64 ? cLargeVersion : cVersion);
    return error == ZIP_OK && !mOutput->hasFailed();
}

bool ZipArchiver::addContent(ZipSource& source, const Entry& entry)
{
    // Made once, and behind the library's own memory: that is then kept from one entry to the next, too.
    mChunk.resize(cChunkSize);
    qint64 rest = entry.size;
    uLong crc = 0;
    while (rest > 0) {
        const int count = source.read(mChunk.data(), static_cast<int>(std::min<qint64>(rest, mChunk.size())));
        if (count <= 0)
            break;
        if (zipWriteInFileInZip(mHandle.get(), mChunk.constData(), static_cast<unsigned>(count)) != ZIP_OK)
            return giveUp(QLatin1String("Error in writing file in the zipfile: ") + entry.sourcePath);
        if (!goesOn(count))
            return giveUp(QStringLiteral("The packing was stopped."));
        rest -= count;
        if (!entry.password.isEmpty())
            crc = crc32(crc, reinterpret_cast<const Bytef*>(mChunk.constData()), static_cast<uInt>(count));
    }
    // The sizes and the check byte are those of the first pass: a file that has changed since does not fit.
    const bool isSame = rest == 0 && (entry.password.isEmpty() || crc == entry.crc);
    return isSame || giveUp(withReason(QLatin1String("Error in reading file: ") + entry.sourcePath,
                                       source.getReason()));
}

bool ZipArchiver::EndWriting()
{
    return reach(&GDurableFile::Prepare, "ZipArchiver::EndWriting", mHandle != nullptr && endArchive());
}

bool ZipArchiver::FinishWriting()
{
    const bool isReady = mFile != nullptr && (mHandle == nullptr || endArchive());
    const bool isInPlace = reach(&GDurableFile::Commit, "ZipArchiver::FinishWriting", isReady);
    drop();
    return isInPlace;
}

// Takes the archive, when it is ready for it, a step further; drops it when that fails.
bool ZipArchiver::reach(void (GDurableFile::*step)(), const char* source, bool isReady)
{
    QString reason = mOutput != nullptr ? mOutput->getReason() : QString();
    try {
        if (isReady) {
            (mFile.get()->*step)();
            return true;
        }
    } catch (const GException& error) {
        reason = error.GetDescription();
    }
    drop();
    return fail(source, withReason(QLatin1String("Error in closing file: ") + mPath, reason));
}

bool ZipArchiver::endArchive()
{
    if (mHasLarge)
        mOutput->holdBack();
    const bool isEnded = zipClose(mHandle.release(), mComment.constData()) == ZIP_OK;
    if (mHasLarge)
        correctDirectory(mOutput->getHeldBack(), mOutput->getHeldBackSize(), mOldCount);
    return mOutput->flush() && isEnded;
}

bool ZipArchiver::isOwnFile(const QString& path) const
{
    const QFileInfo info(path);
    const auto isSame = [&info](const QFileInfo& own) {
        return info.fileName().compare(own.fileName(), Qt::CaseInsensitive) == 0 && info == own;
    };
    return isSame(QFileInfo(mPath)) || (mFile != nullptr && !mFile->GetTemporaryPath().IsEmpty() &&
                                        isSame(QFileInfo(mFile->GetTemporaryPath().GetNativePath())));
}

// What has been begun can't be taken out of the archive again.
bool ZipArchiver::giveUp(const QString& text)
{
    const QString reason = mOutput->getReason();
    drop();
    return fail("ZipArchiver::AddFile", withReason(text, reason));
}

void ZipArchiver::drop()
{
    mHandle.reset();
    mOutput.reset();
    mOld.reset();
    mFile.reset();
}

bool ZipArchiver::fail(const char* source, const QString& text)
{
    mLastError = text;
    mLog.error(source, text);
    return false;
}
}  // namespace Morvane
