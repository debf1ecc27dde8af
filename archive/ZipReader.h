#pragma once

#include "archive/ZipDirectory.h"
#include "archive/ZipEntry.h"

#include <QByteArray>
#include <QIODevice>

#include <memory>

namespace Morvane
{
class ZipInput;

// A zip archive read entry by entry: the zip library behind checks of our own, so that nothing in the file is
// believed that the file can't back up. Not for several threads at once.
//
// After open() the reader stands on no entry; goToFirst() and goToNext() move it. An entry's content is read
// by openEntry(), readEntry() until it gives 0, and closeEntry(), whose answer says whether all of it came
// and the checksum fits.
class ZipReader
{
public:
    enum class OpenResult
    {
        Done,
        Damaged,        // the entry's header does not fit the directory
        Unsupported,    // its compression or encryption is none that we read
        NeedsPassword,  // it is encrypted and no password was given
        WrongPassword
    };

    // Reads the file of that path, or an open device that can seek.
    explicit ZipReader(const QString& path);
    explicit ZipReader(std::unique_ptr<QIODevice> device);
    ~ZipReader();

    // Opens the archive and counts its entries. False when it can't be read or is no archive, and when it
    // announces more entries than it has room for. An archive without entries is one.
    [[nodiscard]] bool open();

    // Whether open() found an archive, be its number of entries believed or not.
    bool isArchive() const { return mIsArchive; }

    // Why reading failed, in the system's words; empty when it was not the system.
    QString getReason() const;

    // Where the directory lies. Of use once the archive is open.
    const ZipDirectory& getDirectory() const { return mDirectory; }
    ZipInput& getInput() { return *mInput; }

    // Whether the data of two entries overlap. Of use once the archive is open.
    bool hasOverlap() const { return haveEntriesOverlap(*mInput, mDirectory); }

    int getEntryCount() const { return mEntryCount; }

    // Reads the description of an entry. False when there is none left or it can't be read; the two are told
    // apart by the number of entries. The library's error number is kept for messages.
    [[nodiscard]] bool goToFirst();
    [[nodiscard]] bool goToNext();
    const ZipEntry& getEntry() const { return mEntry; }
    int getError() const { return mError; }

    // Begins to read the content of the current entry. The password counts only for an encrypted entry.
    OpenResult openEntry(const QByteArray& password);

    // Reads up to `size` bytes; 0 at the end, -1 when the content is damaged.
    int readEntry(char* bytes, int size);

    // Ends reading. False when the content was not read to its end, is shorter than declared, or fails the
    // checksum.
    [[nodiscard]] bool closeEntry();

private:
    struct Closer
    {
        void operator()(void* handle) const;
    };

    [[nodiscard]] bool openHandle();
    [[nodiscard]] bool openDevice();
    [[nodiscard]] bool readDescription();
    [[nodiscard]] bool beginDecryption(const QByteArray& password);
    [[nodiscard]] bool endContent();

    std::unique_ptr<QIODevice> mDevice;
    std::unique_ptr<ZipInput> mInput;
    std::unique_ptr<void, Closer> mHandle;  // after the input, which it reads through
    QByteArray mNameBuffer;
    QByteArray mExtraBuffer;
    ZipEntry mEntry;
    ZipDirectory mDirectory;
    QString mReason;
    int mEntryCount = 0;
    int mError = 0;
    qint64 mRest = 0;  // bytes of the open entry that are still to come
    bool mIsOpen = false;
    bool mIsArchive = false;
    bool mIsDamaged = false;
};
}  // namespace Morvane
