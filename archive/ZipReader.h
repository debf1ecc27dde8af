#pragma once

#include "archive/ZipDirectory.h"
#include "archive/ZipEntry.h"

#include <QByteArray>
#include <QIODevice>

#include <memory>

namespace Morvane
{
class ZipInput;

// Reads a zip archive entry by entry. It uses the zip library with checks of its own: a number in the file is
// trusted only if the rest of the file confirms it. Not for several threads at once.
//
// After open() there is no current entry; goToFirst() and goToNext() set it. To read an entry's content, call
// openEntry(), then readEntry() until it gives 0, then closeEntry(). The answer of closeEntry() says whether
// the content was complete and matches the checksum.
class ZipReader
{
public:
    enum class OpenResult
    {
        Done,
        Damaged,        // the entry's header does not fit the directory
        Unsupported,    // we can't read its compression or encryption
        NeedsPassword,  // it is encrypted and no password was given
        WrongPassword
    };

    // Reads the file of that path, or an open device that can seek.
    explicit ZipReader(const QString& path);
    explicit ZipReader(std::unique_ptr<QIODevice> device);
    ~ZipReader();

    // Opens the archive and counts its entries. False when it can't be read or is not an archive, and when it
    // announces more entries than it has room for. An archive without entries is accepted.
    [[nodiscard]] bool open();

    // Whether open() found an archive, even if its number of entries is not trusted.
    bool isArchive() const { return mIsArchive; }

    // Why reading failed, in the system's words; empty when it was not the system.
    QString getReason() const;

    // Where the directory is. Only valid once the archive is open.
    const ZipDirectory& getDirectory() const { return mDirectory; }
    ZipInput& getInput() { return *mInput; }

    // Whether the data of two entries overlap. Only valid once the archive is open.
    bool hasOverlap() const { return haveEntriesOverlap(*mInput, mDirectory); }

    int getEntryCount() const { return mEntryCount; }

    // Reads the description of an entry. False when there is none left or it can't be read; the number of
    // entries shows which of the two it is. The library's error number is kept for messages.
    [[nodiscard]] bool goToFirst();
    [[nodiscard]] bool goToNext();
    const ZipEntry& getEntry() const { return mEntry; }
    int getError() const { return mError; }

    // Begins to read the content of the current entry. The password is used only for an encrypted entry.
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
