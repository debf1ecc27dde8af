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
// A zip archive opened for reading and gone through entry by entry:
//
//     for (archive.StartIterate(); !archive.AtEnd(); archive.Next())
//         archive.ExtractCurrentFile(folder, password, 0);
//
// The archive is opened by the first use and stays open. Whatever is in it is taken as hostile: an entry
// whose name would lead out of the destination, that is a symbolic link, or that is larger than the limits is
// refused with a text that names it, and the iteration can go on behind it (see ZipEntryPath for the names).
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

    // Goes to the first entry and gives the number of entries. 0 with AtEnd() set when there are none, and
    // when the archive can't be read ("Can't open zip archive: " and its path); hasFailed() tells which. Also
    // begins a new account of the limits.
    int StartIterate();

    // Goes to the next entry. False, with AtEnd() set, behind the last one and when the directory can't be
    // read further; hasFailed() tells which.
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

    // Everything that the archive's directory says of the current entry; of no use at the end.
    const ZipEntry& getCurrentEntry() const { return mReader->getEntry(); }

    // The text of the last failure. A success leaves it as it is.
    const QString& GetLastError() const { return mLastError; }

    // Writes the current entry below the destination folder, making the folders on the way to it. A file that
    // is there already is replaced once the new one is complete, unless it is read-only; a failure leaves it
    // as it was and no partial file. `mode` is added to the rights of the file (the nine bits of a file mode;
    // 0 for none beyond what the entry brings). The password counts for encrypted entries only; it is
    // tried in Latin-1 and then in UTF-8, as archives do not tell which they have.
    [[nodiscard]] bool ExtractCurrentFile(const QString& destinationFolder, const QString& password,
                                          int mode);

    // The bytes of the current entry. A null array on failure; an entry without bytes gives an empty one that
    // is not null. More than the memory limit is refused.
    QByteArray ExtractCurrentToMemory(const QString& password);

    // Reads the current entry and keeps nothing of it: whether it is whole, as its checksum says. `onRead` is
    // told of the bytes of each chunk; false gives up. May be empty. Folders are whole.
    [[nodiscard]] bool CheckCurrentFile(const QString& password,
                                        const std::function<bool(qint64 bytes)>& onRead);

    // The bytes of the first entry whose whole name matches the regular expression, folders passed over; null
    // when none does, and on failure. Moves to that entry, or to the end.
    QByteArray ExtractToMemory(const QString& pattern, const QString& password);

    // The decoded names of all entries, as far as they can be read. The iteration stays where it is.
    QStringList GetFileList();

    // What a run from StartIterate() on may put on the disk; by default what ZipLimits has. An entry that
    // would go beyond them is refused before anything is written for it.
    void setLimits(const ZipLimits& limits);

    // How many bytes an entry that is extracted to memory may have; 64 MiB by default, never more than 1 GiB.
    void setMemoryLimit(qint64 bytes) { mMemoryLimit = bytes; }

    // Where failures are reported; null for the process-wide trace.
    void setLogInterface(ILogInterface* log) { mLog = ZipLog(log); }

    // From any thread: the extraction that is under way, and every later one, fails soon.
    void cancel() { mIsCancelled = true; }

    // Told, on the thread that extracts, of the bytes of each chunk that ExtractCurrentFile() has written,
    // and of less than none when they are taken back. May be empty.
    void setProgress(std::function<void(qint64 bytes)> progress) { mProgress = std::move(progress); }

    // The folders that extraction has made since StartIterate() and that are empty are removed again. For
    // whoever takes an extraction back.
    void removeMadeFolders(const QString& destinationFolder);

    // Removes what ExtractCurrentFile() wrote for an entry of that name. True when it was there and is gone.
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
