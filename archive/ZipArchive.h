#pragma once

#include "archive/ZipDestination.h"
#include "archive/ZipExtraction.h"
#include "archive/ZipLimits.h"
#include "archive/ZipLog.h"
#include "archive/ZipReader.h"

#include <QStringList>

#include <atomic>

namespace Morvane
{
// A zip archive that is read entry by entry:
//
//     for (archive.StartIterate(); !archive.AtEnd(); archive.Next())
//         archive.ExtractCurrentFile(folder, password, 0);
//
// The first use opens the archive, and it stays open. Its content may be hostile. An entry is refused, with a
// text that names it, if its name would lead out of the destination, if it is a symbolic link, or if it is
// larger than the limits. The iteration can then go on with the next entry (see ZipEntryPath for the names).
//
// No operation throws. A failure puts its text into the last error and reports it to the log. An object
// belongs to one thread at a time; only cancel() may be called from another.
class ZipArchive
{
public:
    explicit ZipArchive(const QString& path);

    // Reads an open device that can seek; the name stands for the path in texts.
    ZipArchive(std::unique_ptr<QIODevice> device, const QString& name);

    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    // Goes to the first entry and gives the number of entries. 0 with AtEnd() set when there are no entries,
    // and when the archive can't be read ("Can't open zip archive: " and its path); hasFailed() tells which.
    // What the limits count also starts at zero again.
    int StartIterate();

    // Goes to the next entry. False, with AtEnd() set, after the last entry and when the rest of the
    // directory can't be read; hasFailed() tells which.
    bool Next();

    // Whether the current index has reached the number of entries.
    bool AtEnd() const { return mIndex >= mCount; }
    void SetAtEnd() { mIndex = mCount; }

    // Whether the last StartIterate() or Next() ended on an error.
    bool hasFailed() const { return mHasFailed; }

    // The number of the current entry, from 0.
    int GetCurrentIndex() const { return mIndex; }

    // The decoded name of the current entry, with '/' between its parts on every system; a folder's name ends
    // in one. Empty when the archive gives no name, and at the end.
    QString GetCurrentFileName() const { return AtEnd() ? QString() : getCurrentEntry().name; }

    // Everything that the archive's directory says about the current entry. Not to be used at the end.
    const ZipEntry& getCurrentEntry() const { return mReader->getEntry(); }

    // The text of the last failure. A success leaves it as it is.
    const QString& GetLastError() const { return mLastError; }

    // Writes the current entry below the destination folder, and makes the folders that it needs there. A
    // file that is there already is replaced when the new one is complete, unless the old one is read-only. A
    // failure leaves the old file as it was, and no incomplete file. `mode` is added to the rights of the
    // file (the nine bits of a file mode; 0 adds no rights to those of the entry). The password is used only
    // for encrypted entries. It is tried in Latin-1 and then in UTF-8, because archives do not tell which of
    // them they use.
    [[nodiscard]] bool ExtractCurrentFile(const QString& destinationFolder, const QString& password,
                                          int mode);

    // The bytes of the current entry. A null array on failure; an entry without bytes gives an empty array
    // that is not null. An entry larger than the memory limit is refused.
    QByteArray ExtractCurrentToMemory(const QString& password);

    // Reads the current entry without keeping its content. True if the entry is whole, which its checksum
    // tells. `onRead` is called with the number of bytes of each chunk; if it gives false, the reading ends.
    // It may be empty. Folders are always whole.
    [[nodiscard]] bool CheckCurrentFile(const QString& password,
                                        const std::function<bool(qint64 bytes)>& onRead);

    // The bytes of the first entry whose whole name matches the regular expression; folders are skipped. Null
    // when no name matches, and on failure. Moves to that entry, or to the end.
    QByteArray ExtractToMemory(const QString& pattern, const QString& password);

    // The decoded names of all entries, as far as they can be read. The iteration stays where it is.
    QStringList GetFileList();

    // Sets how much may be written to the disk after each StartIterate(); by default what ZipLimits has. An
    // entry that would exceed the limits is refused before anything is written for it.
    void setLimits(const ZipLimits& limits);

    // Sets how many bytes an entry that is extracted to memory may have: 64 MiB by default, never more than 1
    // GiB.
    void setMemoryLimit(qint64 bytes) { mMemoryLimit = bytes; }

    // Where failures are reported; null for the process-wide trace.
    void setLogInterface(ILogInterface* log) { mLog = ZipLog(log); }

    // From any thread: makes the running extraction, and every later one, fail soon.
    void cancel() { mIsCancelled = true; }

    // Sets a function that is called on the extracting thread with the number of bytes of each chunk that
    // ExtractCurrentFile() has written. The number is negative when written bytes are taken back. The
    // function may be empty.
    void setProgress(std::function<void(qint64 bytes)> progress) { mProgress = std::move(progress); }

    // Removes the empty folders that extraction has made since StartIterate(). For callers that undo an
    // extraction.
    void removeMadeFolders(const QString& destinationFolder);

    // Removes what ExtractCurrentFile() wrote for an entry of that name. True when it was there and has been
    // removed.
    [[nodiscard]] bool removeExtracted(const QString& destinationFolder, const QString& entryName);

private:
    bool fail(const char* source, const QString& text);
    void reportEnd(const char* source, const QString& text);
    bool hasEntry(const char* source);
    void goBackToCurrent();
    QString describe(const ZipOutcome& outcome) const;
    QString describeStep(const ZipOutcome& outcome) const;
    QString withReason(const QString& text) const;
    ZipDestination& getDestination(const QString& folder);
    bool isWithinReason(ZipDestination& destination);

    QString mPath;
    std::unique_ptr<ZipReader> mReader;
    std::unique_ptr<ZipDestination> mDestination;
    QString mDestinationFolder;
    ZipLimits mLimits;
    ZipBudget mBudget{mLimits};
    ZipLog mLog;
    QString mLastError;
    qint64 mMemoryLimit;
    int mCount = 0;
    int mIndex = 0;
    bool mHasFailed = false;
    bool mIsLimited = false;  // whether the next is known, and the budget made for the destination
    bool mIsReasonable = false;
    std::function<void(qint64 bytes)> mProgress;
    std::atomic<bool> mIsCancelled{false};
};
}  // namespace Morvane
