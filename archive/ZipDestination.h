#pragma once

#include "archive/ZipFolder.h"
#include "archive/ZipLog.h"
#include "foundation/files/FileHandler.h"
#include "foundation/system/PFileHandle.h"

#include <QStringList>

#include <map>
#include <vector>

namespace Morvane
{
// The folder that entries are extracted into. It makes sure that nothing is written outside it: below the
// folder no link is followed. A file that this object has written is not written again for another entry,
// even under another name that the file system treats as the same.
//
// Missing folders are made, the destination itself included. Parts are the names on the way from the
// destination to a file or folder; none of them is "..", empty, or holds a separator.
class ZipDestination : private ILogInterface
{
public:
    // An absolute or relative path; the folder need not be there.
    explicit ZipDestination(const QString& path);
    ~ZipDestination() override;

    // The absolute path of a file or folder, with '/' separators.
    QString getPath(const QStringList& parts) const;

    // Makes a folder and all that is missing on the way to it, and adds the mode bits to it. False when that
    // fails, or when a link or a file is in the way.
    [[nodiscard]] bool makeFolder(const QStringList& parts, int mode = 0);

    // The log in which a wait for somebody who has a file open is reported, and the hook that ends such a
    // wait; see FileHandler.
    void setLog(const ZipLog& log) { mLog = log; }
    void setCancelHook(const FileHandler::CancelHook& isCancelled) { mFiles.setCancelHook(isCancelled); }

    // Bytes that may still be written to the disk of the destination; the largest number when this is not
    // known.
    qint64 getFreeSpace();

    // Why the last operation failed, in the system's words.
    const QString& getReason() const { return mReason; }

    // Removes the empty folders that makeFolder() and ZipTarget::begin() have made since the last call of
    // this function.
    void removeMadeFolders();

    // Removes a file or an empty folder. True when it was there and has been removed.
    [[nodiscard]] bool remove(const QStringList& parts);

    // Forgets which files were written, and closes the folders that are kept open between calls.
    void startAnew();
    void closeFolders();

private:
    friend class ZipTarget;

    struct Level
    {
        QString name;
        std::unique_ptr<ZipFolder> folder;
        bool isCleared = false;  // of what killed extractions left
    };

    [[nodiscard]] bool goTo(const QStringList& parts, bool isMaking);
    void log(LogLevel level, const QString& source, const QString& message) noexcept override;
    bool failBySystem();
    [[nodiscard]] bool openRoot(bool isMaking);
    [[nodiscard]] bool descend(const QString& name, bool isMaking);

    const QString mPath;
    QString mReason;
    std::vector<Level> mLevels;  // the open folders from the destination down to the one used last
    std::map<FileIdentity, int> mWritten;
    ZipLog mLog;
    FileHandler mFiles;  // removes and moves
    std::vector<QStringList> mMadeFolders;
};

// A file that is being written into a destination. It has no name, or a hidden one, until it is complete. A
// file that is not committed leaves no trace, even when the process is killed. (On a POSIX file system
// without nameless files, a killed process leaves the hidden file. The next extraction into the folder that
// needs such a name removes it, unless a living process owns it.)
class ZipTarget
{
public:
    enum class Result
    {
        Done,
        CannotMake,
        TakenByOther  // another entry of the same archive has been written to this file
    };

    // The folder of the file must have been made with makeFolder() just before.
    explicit ZipTarget(ZipDestination& destination);
    ~ZipTarget();
    ZipTarget(const ZipTarget&) = delete;
    ZipTarget& operator=(const ZipTarget&) = delete;

    // Begins the file with that name for the entry with that number.
    Result begin(const QString& name, int entryIndex);

    ZipFile& getFile() { return *mFile; }

    // Closes the file and puts it in its place. False when that fails; nothing is left then.
    [[nodiscard]] bool commit();

private:
    ZipFolder& getFolder() const;
    Result lookAtTarget(bool& isFree) const;
    [[nodiscard]] bool makeTemporary();
    void clearFolder();
    [[nodiscard]] bool putInPlace();
    [[nodiscard]] bool closeInPlace();
    void removeTemporary();

    ZipDestination& mDestination;
    std::unique_ptr<ZipFile> mFile;
    QString mName;
    QString mTemporaryName;  // empty while the file has none
    PFileHandle mOwner;      // keeps a file that has a passing name, until it has its own
    int mEntryIndex = 0;
};
}  // namespace Morvane
