#include "archive/ZipArchiver.h"

#include "archive/ZipCrc.h"
#include "archive/ZipEntry.h"
#include "archive/ZipFolder.h"
#include "archive/ZipName.h"
#include "archive/ZipReader.h"
#include "archive/ZipSourceAttributes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <quazip/zip.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>

namespace Morvane
{
static constexpr int cChunkSize = 64 * 1024;
static constexpr int cMethodStored = 0;
static constexpr int cMethodDeflated = 8;
static constexpr int cWindowBits = -15;
static constexpr int cMemoryLevel = 8;
static constexpr int cMaximumFieldSize = 65535;
static constexpr int cZip64RecordSize = 20;
static constexpr uint32_t cDosFolder = 0x10;
static constexpr uint32_t cDosReadOnly = 0x01;
static constexpr uint16_t cVersion = 20;
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

// The password as the format takes it. Null where it has characters that Latin-1 lacks: all of these would
// become the same one.
QByteArray toPasswordBytes(const QString& password)
{
    const QByteArray bytes = password.toLatin1();
    return QString::fromLatin1(bytes) == password ? bytes : QByteArray();
}

uint32_t makeDosAttributes(const QFileInfo& source)
{
    return (source.isDir() ? cDosFolder : 0) | (source.isWritable() ? 0 : cDosReadOnly);
}

// Removes the file as long as it stands under that name.
void removeQuietly(QFile& file)
{
    file.close();
    file.remove();
}
}  // namespace

void ZipArchiver::Closer::operator()(void* handle) const
{
    zipClose(handle, nullptr);
}

ZipArchiver::ZipArchiver(const QString& path)
    : mPath(QFileInfo(path).exists() ? QFileInfo(path).canonicalFilePath()
                                     : QFileInfo(path).absoluteFilePath())
{
}

ZipArchiver::~ZipArchiver()
{
    mHandle.reset();
    if (mFile != nullptr)
        removeQuietly(*mFile);
}

bool ZipArchiver::StartWriting(ZipStart start, const QString& password, int level)
{
    if (mFile != nullptr || level < 0 || level > cBestLevel)
        return fail("ZipArchiver::StartWriting", QLatin1String("Error opening file: ") + mPath);
    mPassword = password;
    mLevel = level;
    mNames.clear();
    if (openArchive(start))
        return true;
    mHandle.reset();
    if (mFile != nullptr)
        removeQuietly(*mFile);
    mFile.reset();
    return fail("ZipArchiver::StartWriting", QLatin1String("Error opening file: ") + mPath);
}

bool ZipArchiver::openArchive(ZipStart start)
{
    static std::atomic<unsigned> lastNumber{0};
    const QFileInfo target(mPath);
    if (target.exists() && (!target.isFile() || !target.isWritable()))
        return false;
    const std::unique_ptr<ZipFolder> folder = ZipFolder::openRoot(target.absolutePath());
    const QString name =
        QStringLiteral(".%1-%2.part").arg(QCoreApplication::applicationPid()).arg(++lastNumber);
    if (folder == nullptr || folder->makeFile(name) == nullptr)
        return false;
    mFile = std::make_unique<QFile>(target.absoluteDir().filePath(name));
    const bool isAppending = start == ZipStart::Append && target.exists();
    if (!mFile->open(QIODevice::ReadWrite) || (isAppending && !copyOldArchive()))
        return false;
    mHandle.reset(zipOpen64(mFile.get(), isAppending ? APPEND_STATUS_ADDINZIP : APPEND_STATUS_CREATE));
    if (mHandle == nullptr)
        return false;
    // Sizes go into the entry's header, where every reader finds them, and the file is ours to close: the
    // library would not tell that closing failed.
    zipClearFlags(mHandle.get(), ZIP_WRITE_DATA_DESCRIPTOR | ZIP_AUTO_CLOSE);
    return true;
}

// The library takes any file for an archive to add to, so it is read first.
bool ZipArchiver::copyOldArchive()
{
    ZipReader reader(mPath);
    bool isReadable = reader.open();
    for (int index = 0; isReadable && index < reader.getEntryCount(); ++index) {
        isReadable = index == 0 ? reader.goToFirst() : reader.goToNext();
        mNames.insert(reader.getEntry().name);
    }
    QFile old(mPath);
    if (!isReadable || !old.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    QByteArray chunk(cChunkSize, Qt::Uninitialized);
    qint64 count = 0;
    while ((count = old.read(chunk.data(), chunk.size())) > 0) {
        if (mFile->write(chunk.constData(), count) != count)
            return false;
    }
    return count == 0 && mFile->flush();
}

bool ZipArchiver::AddFile(const QString& sourcePath, const QString& nameInArchive, int level, ZipNames names,
                          const QString& password)
{
    const QFileInfo info(sourcePath);
    Entry entry;
    if (mHandle == nullptr || !prepareEntry(info, nameInArchive, names, entry))
        return fail("ZipArchiver::AddFile",
                    QLatin1String("Error in opening file in zipfile: ") + nameInArchive);
    entry.level = info.isDir() ? 0 : (level == cStartLevel ? mLevel : level);
    const QString& ownPassword = password.isEmpty() ? mPassword : password;
    entry.password = info.isDir() ? QByteArray() : toPasswordBytes(ownPassword);
    const bool hasPassword = info.isDir() || ownPassword.isEmpty() || !entry.password.isEmpty();
    if (!hasPassword || entry.level < 0 || entry.level > cBestLevel)
        return fail("ZipArchiver::AddFile",
                    QLatin1String("Error in opening file in zipfile: ") + nameInArchive);
    QFile source(sourcePath);
    if (!info.isDir()) {
        if (!info.isFile() || !source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            return fail("ZipArchiver::AddFile",
                        QLatin1String("Error in opening file for reading: ") + sourcePath);
        if (!getFileCrc(source, entry.crc, entry.size) || !source.seek(0))
            return fail("ZipArchiver::AddFile", QLatin1String("Error in reading file: ") + sourcePath);
    }
    if (!openEntry(entry))
        return giveUp(QLatin1String("Error in opening file in zipfile: ") + nameInArchive);
    if (!info.isDir() && !addContent(source, entry))
        return false;
    return closeEntry(entry);
}

bool ZipArchiver::AddFileWithIerarchy(const QString& sourcePath, const QString& baseFolder, int level,
                                      ZipNames names)
{
    const QString base = QFileInfo(baseFolder).absoluteFilePath();
    const QString name = QDir(base).relativeFilePath(QFileInfo(sourcePath).absoluteFilePath());
    return AddFile(sourcePath, name, level, names, QString());
}

bool ZipArchiver::prepareEntry(const QFileInfo& source, const QString& nameInArchive, ZipNames names,
                               Entry& entry)
{
    QString name = makeSafeName(nameInArchive);
    if (name.isEmpty())
        return false;
    if (source.isDir())
        name += QLatin1Char('/');
    if (mNames.contains(name))
        return false;
    const bool isLarge = source.size() > cSmallSize || mFile->pos() > cSmallSize;
    const bool isPlain = names == ZipNames::Plain || isLarge;
    entry.sourcePath = source.filePath();
    entry.rawName = isPlain ? name.toUtf8() : ZipName::encodeZipName(name);
    entry.nameField = isPlain ? QByteArray() : ZipName::createExtraField(name);
    entry.flags = isPlain ? cFlagUtf8 : 0;
    entry.isZip64 = isLarge || (!isPlain && !source.isDir());
    entry.dosTime = makeDosTime(source.lastModified());
    // Attributes of DOS say that the name is in the OEM code page, those of Unix keep the rights. A name in
    // ASCII or UTF-8 does not need the first.
    const bool isOemName = !isPlain && entry.rawName != name.toUtf8();
    entry.attributes = makeDosAttributes(source) | (isOemName ? 0 : getUnixAttributes(source));
    entry.madeBy = static_cast<uint16_t>(cVersion | (isOemName ? 0 : getMadeBy()));
    if (entry.rawName.size() > cMaximumFieldSize ||
        entry.nameField.size() + cZip64RecordSize > cMaximumFieldSize)
        return false;
    mNames.insert(name);
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
    return zipOpenNewFileInZip4_64(mHandle.get(), entry.rawName.constData(), &info,
                                   entry.nameField.constData(), fieldSize, entry.nameField.constData(),
                                   fieldSize, nullptr, entry.level > 0 ? cMethodDeflated : cMethodStored,
                                   entry.level, 0, cWindowBits, cMemoryLevel, Z_DEFAULT_STRATEGY,
                                   entry.password.isEmpty() ? nullptr : entry.password.constData(), crc,
                                   entry.madeBy, entry.flags, entry.isZip64 ? 1 : 0) == ZIP_OK;
}

bool ZipArchiver::addContent(QFile& source, const Entry& entry)
{
    // Made once, and behind the library's own memory: that is then kept from one entry to the next, too.
    mChunk.resize(cChunkSize);
    qint64 rest = entry.size;
    uLong crc = 0;
    while (rest > 0) {
        const qint64 count = source.read(mChunk.data(), std::min<qint64>(rest, mChunk.size()));
        if (count <= 0)
            break;
        if (zipWriteInFileInZip(mHandle.get(), mChunk.constData(), static_cast<unsigned>(count)) != ZIP_OK)
            return giveUp(QLatin1String("Error in writing file in the zipfile: ") + entry.sourcePath);
        rest -= count;
        if (!entry.password.isEmpty())
            crc = crc32(crc, reinterpret_cast<const Bytef*>(mChunk.constData()), static_cast<uInt>(count));
    }
    // The sizes and the check byte are those of the first pass: a file that has changed since does not fit.
    const bool isSame = rest == 0 && (entry.password.isEmpty() || crc == entry.crc);
    return isSame || giveUp(QLatin1String("Error in reading file: ") + entry.sourcePath);
}

bool ZipArchiver::closeEntry(const Entry& entry)
{
    return zipCloseFileInZip(mHandle.get()) == ZIP_OK ||
           giveUp(QLatin1String("Error in writing file in the zipfile: ") + entry.sourcePath);
}

bool ZipArchiver::FinishWriting()
{
    const QString failure = QLatin1String("Error in closing file: ") + mPath;
    if (mHandle == nullptr)
        return fail("ZipArchiver::FinishWriting", failure);
    const bool isEnded = zipClose(mHandle.release(), nullptr) == ZIP_OK;
    // An archive that was added to may end in what it held before.
    const bool isWritten =
        isEnded && mFile->flush() && mFile->error() == QFileDevice::NoError && mFile->resize(mFile->pos());
    const QFileInfo part(*mFile);
    const QFileInfo target(mPath);
    if (target.exists())
        mFile->setPermissions(target.permissions());
    mFile->close();
    const std::unique_ptr<ZipFolder> folder = ZipFolder::openRoot(target.absolutePath());
    const bool isInPlace = isWritten && mFile->error() == QFileDevice::NoError && folder != nullptr &&
                           folder->replaceFile(part.fileName(), target.fileName());
    if (!isInPlace)
        mFile->remove();
    mFile.reset();
    return isInPlace || fail("ZipArchiver::FinishWriting", failure);
}

bool ZipArchiver::isOwnFile(const QString& path) const
{
    const QFileInfo info(path);
    const auto isSame = [&info](const QFileInfo& own) {
        return info.fileName().compare(own.fileName(), Qt::CaseInsensitive) == 0 && info == own;
    };
    return isSame(QFileInfo(mPath)) || (mFile != nullptr && isSame(QFileInfo(*mFile)));
}

// What has been begun can't be taken out of the archive again.
bool ZipArchiver::giveUp(const QString& text)
{
    mHandle.reset();
    removeQuietly(*mFile);
    mFile.reset();
    return fail("ZipArchiver::AddFile", text);
}

bool ZipArchiver::fail(const char* source, const QString& text)
{
    mLastError = text;
    mLog.error(source, text);
    return false;
}
}  // namespace Morvane
