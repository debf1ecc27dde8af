#include "archive/ZipReader.h"

#include "archive/ZipInput.h"
#include "archive/ZipName.h"

#include "foundation/core/SharedFile.h"

#include <QFile>

#include <quazip/unzip.h>

#include <climits>
#include <limits>
#include <optional>

namespace Morvane
{
static constexpr int cMethodStored = 0;
static constexpr int cMethodDeflated = 8;
static constexpr uint16_t cFlagStrongEncryption = 0x0040;

ZipReader::ZipReader(const QString& path) : ZipReader(std::make_unique<QFile>(path)) {}

ZipReader::ZipReader(std::unique_ptr<QIODevice> device) : mDevice(std::move(device)) {}

ZipReader::~ZipReader() = default;

void ZipReader::Closer::operator()(void* handle) const
{
    unzClose(handle);
}

bool ZipReader::open()
{
    if (!mIsOpen)
        mIsOpen = openHandle();
    return mIsOpen;
}

bool ZipReader::openHandle()
{
    if (!openDevice())
        return false;
    mInput = std::make_unique<ZipInput>(*mDevice);
    const std::optional<ZipDirectory> directory = findZipDirectory(*mInput);
    mIsArchive = directory.has_value();
    if (!mIsArchive || directory->count < 0 || directory->count > INT_MAX)
        return false;
    mDirectory = *directory;
    mEntryCount = static_cast<int>(mDirectory.count);
    mInput->endWith(mDirectory.end, mDirectory.makeEnd());
    // The library takes an archive without entries for none.
    if (mEntryCount > 0)
        mHandle.reset(mInput->open());
    return mEntryCount == 0 || mHandle != nullptr;
}

// A pipe or a device is not opened: it could make the reader wait for ever.
bool ZipReader::openDevice()
{
    if (mDevice->isOpen())
        return true;
    if (auto* const file = qobject_cast<QFile*>(mDevice.get()))
        return OpenSharedForReading(*file, cNoLargestFile, mReason) == FileOpening::cOpen;
    if (mDevice->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return true;
    mReason = mDevice->errorString();
    return false;
}

QString ZipReader::getReason() const
{
    return mInput != nullptr && mInput->hasFailed() ? mInput->getReason() : mReason;
}

bool ZipReader::goToFirst()
{
    mError = mHandle != nullptr ? unzGoToFirstFile(mHandle.get()) : UNZ_END_OF_LIST_OF_FILE;
    return mError == UNZ_OK && readDescription();
}

bool ZipReader::goToNext()
{
    mError = mHandle != nullptr ? unzGoToNextFile(mHandle.get()) : UNZ_END_OF_LIST_OF_FILE;
    return mError == UNZ_OK && readDescription();
}

bool ZipReader::readDescription()
{
    mNameBuffer.resize(ZipName::cMaximumSize);
    mExtraBuffer.resize(ZipName::cMaximumSize);
    mEntry = ZipEntry();
    unz_file_info64 info{};
    mError = unzGetCurrentFileInfo64(mHandle.get(), &info, mNameBuffer.data(),
                                     static_cast<uLong>(mNameBuffer.size()), mExtraBuffer.data(),
                                     static_cast<uLong>(mExtraBuffer.size()), nullptr, 0);
    constexpr ZPOS64_T cMaximumFileSize = std::numeric_limits<qint64>::max();
    if (mError == UNZ_OK &&
        (info.uncompressed_size > cMaximumFileSize || info.compressed_size > cMaximumFileSize))
        mError = UNZ_BADZIPFILE;
    if (mError != UNZ_OK)
        return false;
    if (info.size_filename <= ZipName::cMaximumSize && info.size_file_extra <= ZipName::cMaximumSize)
        mEntry.name = ZipName::decodeZipName(mNameBuffer.left(static_cast<int>(info.size_filename)),
                                             mExtraBuffer.left(static_cast<int>(info.size_file_extra)));
    mEntry.size = static_cast<qint64>(info.uncompressed_size);
    mEntry.packedSize = static_cast<qint64>(info.compressed_size);
    mEntry.crc = static_cast<uint32_t>(info.crc);
    mEntry.flags = static_cast<uint16_t>(info.flag);
    mEntry.method = static_cast<uint16_t>(info.compression_method);
    mEntry.madeBy = static_cast<uint16_t>(info.version);
    mEntry.attributes = static_cast<uint32_t>(info.external_fa);
    mEntry.dosTime = static_cast<uint32_t>(info.dosDate);
    return true;
}

ZipReader::OpenResult ZipReader::openEntry(const QByteArray& password)
{
    const bool isReadable = mEntry.method == cMethodStored || mEntry.method == cMethodDeflated;
    if (!isReadable || (mEntry.flags & cFlagStrongEncryption) != 0)
        return OpenResult::Unsupported;
    if (mEntry.isEncrypted() && password.isEmpty())
        return OpenResult::NeedsPassword;
    if (unzOpenCurrentFile(mHandle.get()) != UNZ_OK) {
        static_cast<void>(endContent());  // none of it was read
        return OpenResult::Damaged;
    }
    mRest = mEntry.size;
    mIsDamaged = false;
    if (!mEntry.isEncrypted() || beginDecryption(password))
        return OpenResult::Done;
    static_cast<void>(endContent());  // none of it was read
    return OpenResult::WrongPassword;
}

// The check byte tells a wrong password in all but two of 256 cases; the checksum tells the others.
bool ZipReader::beginDecryption(const QByteArray& password)
{
    const qint64 content = static_cast<qint64>(unzGetCurrentFileZStreamPos64(mHandle.get()));
    const std::optional<uint8_t> check = mInput->beginDecryption(content, password);
    return check.has_value() && (*check == mEntry.crc >> 24 || *check == (mEntry.dosTime >> 8 & 0xff));
}

bool ZipReader::endContent()
{
    mInput->endDecryption();
    return unzCloseCurrentFile(mHandle.get()) == UNZ_OK;
}

int ZipReader::readEntry(char* bytes, int size)
{
    const int count = unzReadCurrentFile(mHandle.get(), bytes, static_cast<unsigned>(size));
    if (count < 0 || count > mRest || (count == 0 && mRest > 0)) {
        mIsDamaged = true;
        return -1;
    }
    mRest -= count;
    return count;
}

bool ZipReader::closeEntry()
{
    return endContent() && mRest == 0 && !mIsDamaged;
}
}  // namespace Morvane
