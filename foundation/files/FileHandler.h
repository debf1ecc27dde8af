#pragma once

#include <QDateTime>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <boost/system/error_code.hpp>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

class QDir;
class QDomNode;

namespace Morvane
{
class ILogInterface;

namespace FileSystem
{
class FolderLock;
enum class ItemKind;
struct DateTimes;
}  // namespace FileSystem

// File and folder operations that survive what passes: a virus scanner that holds a file for a moment, a
// folder that another program is about to leave, a network volume that answers late.
//
// Common rules. Paths are absolute, or relative to the current folder, with '/' or native separators and of
// any length; results have '/' separators. An operation gives false when it did not do all of its work and
// has then logged an error line whose source is "FileHandler::" + its name, with the system's reason in
// brackets at its end where there is one; nothing is thrown. What can't be looked at is never taken for
// missing, and a folder that can't be read whole is never taken for empty. A file takes
// its AppleDouble companion ("._" + file name, beside it) along. Nothing that exists is ever replaced. A
// symbolic link or junction is removed, renamed or copied as a link and never followed, except where a single
// operation's comment says so. What an operation makes appears under its name when it is complete; until then
// it has a hidden name that begins with ".~#~".
//
// Every operation is virtual and the operations call each other through the object, so that a derived class
// can replace single ones. One handler may be used from several threads: names that it makes are never given
// out twice while they are in use, but two operations on one item are the caller's affair.
class FileHandler
{
public:
    // How long the retry loops wait between two attempts.
    struct RetryPauses
    {
        std::chrono::milliseconds remove{500};
        std::chrono::milliseconds rename{1000};
    };

    // How often an operation is attempted before it gives up.
    static constexpr int cAttempts = 20;

    FileHandler();
    virtual ~FileHandler();
    FileHandler(const FileHandler&) = delete;
    FileHandler& operator=(const FileHandler&) = delete;

    // --- Log ---

    // Where lines go; null (as at the start) drops them. Not owned. Set it before threads share the handler.
    virtual void setLogInterface(ILogInterface* log);

    // Writes one line with the source and level to the log interface.
    virtual void LogAssert(const QString& source, const QString& message) const;
    virtual void LogDebug(const QString& source, const QString& message) const;
    virtual void LogError(const QString& source, const QString& message) const;

    void setRetryPauses(const RetryPauses& pauses) { mPauses = pauses; }

    // Asked again and again, at least every 50 ms, while an operation waits to try once more; true makes the
    // operation give up at once, as after its last attempt. Called on the thread of the operation. That an
    // operation has begun to wait is logged at error level, so that a person who watches a program stand
    // still learns why; further attempts are at debug level.
    using CancelHook = std::function<bool()>;
    void setCancelHook(const CancelHook& isCancelled) { mIsCancelled = isCancelled; }

    // --- Remove ---

    // Removes a file or a link, then its companion. Up to 20 attempts, 500 ms apart. A file that is not
    // there, or that goes away meanwhile, counts as removed.
    [[nodiscard]] virtual bool removeFile(const QString& path);

    // The same without the companion, which may be somebody else's.
    [[nodiscard]] virtual bool removeFileAlone(const QString& path);

    // Removes a folder with all that is in it: it is first renamed to a hidden name, so that it is gone from
    // its own name at once even when its content resists. A link to a folder is only unlinked. A folder that
    // is not there counts as removed.
    [[nodiscard]] virtual bool removeFolder(const QString& path);

    // Empties a folder and keeps it. Goes on past an entry that can't be removed. The second form removes
    // only the entries whose names match one of the wildcards ("*", "?", "[...]", without regard to case).
    [[nodiscard]] virtual bool cleanupFolder(const QString& folder);
    [[nodiscard]] virtual bool cleanupFolder(const QString& folder, const QStringList& wildcards);

    // Moves a file or folder to the user's recycle bin, without any window. The companion stays.
    // Win32: a path of 260 characters or more can't go there and is deleted for good, which works for files.
    // POSIX: the freedesktop trash; needs Qt 5.15.
    [[nodiscard]] virtual bool moveToRecycleBin(const QString& path);

    // --- Rename and move ---

    // renameFolder for a folder, renameFile for anything else.
    [[nodiscard]] virtual bool rename(const QString& source, const QString& destination);

    // Renames or moves a file or link to a full path, with its companion. Up to 20 attempts, 1000 ms apart;
    // to another volume by copy and removal. The destination's folder must be there. Onto the name of its own
    // companion a file goes by taking the companion's place.
    [[nodiscard]] virtual bool renameFile(const QString& source, const QString& destination);

    // Renames or moves a folder likewise. When the copy to another volume fails, the source stays whole.
    [[nodiscard]] virtual bool renameFolder(const QString& source, const QString& destination);

    // Puts the prefix before the name of a file or folder.
    [[nodiscard]] virtual bool renameAddPrefix(const QString& path, const QString& prefix);

    // Renames as `rename` does and makes sure of the end: the destination is there and the source is gone.
    // For volumes that report a rename as done and keep the old name.
    [[nodiscard]] virtual bool renameFE(const QString& source, const QString& destination);

    // Moves a file to a full path, making the destination's folder when it is missing.
    [[nodiscard]] virtual bool moveFile(const QString& source, const QString& destination);

    // Moves everything in a folder into another, which is made when missing; the emptied folder stays. An
    // entry whose name is taken there stays where it is and makes the result false; the rest goes on.
    [[nodiscard]] virtual bool moveFolderContent(const QString& source, const QString& destination);

    // Moves a folder to a full path; when a folder is there already, merges into it, sub-folder by
    // sub-folder. Removes each source folder that became empty. A file whose name is taken stays, as above.
    [[nodiscard]] virtual bool moveFolderData(const QString& source, const QString& destination);

    // Hold, and let go of, the folder of an item around a rename, so that nobody takes it away meanwhile.
    // LockFolder is false when somebody else holds it. Calls nest; `path` is the item's.
    [[nodiscard]] virtual bool LockFolder(const QString& path);
    [[nodiscard]] virtual bool UnlockFolder(const QString& path);

    // --- Copy ---

    // Copies a file's content, dates and permissions, and its companion. A link as `source` is followed here:
    // the copy is a file. The destination's folder must be there.
    [[nodiscard]] virtual bool copyFile(const QString& source, const QString& destination);

    // Copies a folder with everything in it, links as links, to a new folder; folders above it are made.
    // Pipes, sockets and devices in it make it fail. A folder is not copied into itself.
    [[nodiscard]] virtual bool copyFolder(const QString& source, const QString& destination);

    // The step of copyFolder: copies the content of one folder into another that is there, and ends at the
    // first failure.
    [[nodiscard]] virtual bool copyFolderPrivate(const QString& source, const QString& destination);

    // Gives `destination` the modification and access date of `source`, and its creation date where the
    // system can set that.
    [[nodiscard]] virtual bool CopyDateTimeInfo(const QString& source, const QString& destination);
    [[nodiscard]] virtual bool GetDateTimeInfo(const QString& path, FileSystem::DateTimes* times);

    // The creation date alone. Always false on POSIX, which has no call for it.
    [[nodiscard]] virtual bool CopyCreationDateTime(const QString& source, const QString& destination);

    // Gives the owner the right to read and write a file, or a folder and everything in it. Links are passed
    // over.
    [[nodiscard]] virtual bool setRWPermissions(const QString& path);

    // --- Ask ---

    // Reads a whole file; follows a link. A missing file and one that can't be read are failures; `content`
    // is then empty.
    [[nodiscard]] virtual bool readFile(const QString& path, QByteArray* content);

    // Whether the user can open the file in the mode, or list the folder (ReadOnly) or make files in it
    // (WriteOnly). Tried, not guessed from marks. "No" is logged at debug level only.
    [[nodiscard]] virtual bool checkAccess(const QString& path,
                                           QIODevice::OpenMode mode = QIODevice::ReadWrite);

    // Counts in a folder: its own entries of every kind; files and links at any depth; files and links
    // directly in it. The companions count like any file. False when there is no such folder, or it or one in
    // it can't be read; the count is 0, a list or a path below empty.
    [[nodiscard]] virtual bool countFolderItems(const QString& folder, qint64* count);
    [[nodiscard]] virtual bool getFileCount(const QString& folder, qint64* count);
    [[nodiscard]] virtual bool getTopLevelFileCount(const QString& folder, qint64* count);

    // The absolute paths of the files and links at any depth, sorted.
    [[nodiscard]] virtual bool getFileList(const QString& folder, QStringList* files);

    // Bytes in a file, or in all files at any depth of a folder, without links' targets; and the same for the
    // companions alone: a file's own one, or all "._" files in a folder.
    [[nodiscard]] virtual bool getByteCount(const QString& path, qint64* bytes);
    [[nodiscard]] virtual bool getDotUnderscoreByteCount(const QString& path, qint64* bytes);

    // Bytes that the user may still write to the volume of the path, which need not be there yet.
    [[nodiscard]] virtual bool getFreeSpace(const QString& path, qint64* bytes);

    // Look for a file by name below a folder; false, without a log line, when there is none, and with one
    // when a folder that could hold it can't be read. findFile takes the one nearest to the top,
    // findFileDepthFirst goes down each sub-folder before it looks at the files beside it; among equals the
    // first in the order of names. Names are compared as the file system does.
    [[nodiscard]] virtual bool findFile(const QString& folder, const QString& name, QString* found);
    [[nodiscard]] virtual bool findFileDepthFirst(const QString& folder, const QString& name, QString* found);

    // Like findFile, by wildcard ("*", "?", "[...]", without regard to case): the first, or all, sorted.
    // Companions are found only by a wildcard that begins with "._".
    [[nodiscard]] virtual bool findFileByWildcard(const QString& folder, const QString& wildcard,
                                                  QString* found);
    [[nodiscard]] virtual bool findFilesByWildcard(const QString& folder, const QString& wildcard,
                                                   QStringList* found);

    // Whether both paths lie on one volume; what is not there yet counts to the folder that would hold it.
    [[nodiscard]] virtual bool checkSameVolume(const QString& one, const QString& other);

    // False for a drive without a medium, and for a path on no volume at all.
    virtual bool hasDiskInDrive(const QString& path);

    // The extension, without the dot, of what a link names (Win32: a shell link file; POSIX: a symbolic
    // link). False when the path is no such link; an extension may be empty.
    [[nodiscard]] virtual bool getExtensionFromLink(const QString& link, QString* extension);

    // --- Texts and names ---

    // "1999 bytes", "1.95 KB", "12.3 MB": three significant digits below 999.5 of a unit, four up to 1999.5.
    virtual QString formatSize(qint64 bytes);

    // The form of an absolute Windows path that lifts the limit of 260 characters ("\\?\C:\a",
    // "\\?\UNC\srv\share\a"). Relative paths and device paths come back unchanged, POSIX paths too.
    virtual QString longFileName(const QString& path);
    virtual bool isUncPath(const QString& path);

    // The form that the operations work with: '/' separators, no "\\?\", no "." and "..".
    virtual QString ConvertPath(const QString& path);

    // Cuts the separators at the end off the path; a root keeps its own. True when there were any.
    [[nodiscard]] virtual bool splitOffSlashesFromPath(QString* path);

    // The first free path of the series "x.pdf", "x_2.pdf", "x_3.pdf" ... for a file or folder. False, and
    // the path unchanged, when 9999 are taken.
    [[nodiscard]] virtual bool getVersionName(const QString& path, QString* versionPath);

    // Completes where a copy or move of `source` shall go: into `destination` under the source's own name
    // when that is a folder (for a folder: always), and on to the next free version name when the name is
    // taken.
    [[nodiscard]] virtual bool UpdateFileDestination(const QString& source, QString* destination);
    [[nodiscard]] virtual bool UpdateFolderDestination(const QString& source, QString* destination);

    // base + "_" + five hexadecimal digits, a name that is free in the folder. Not reserved by itself. Where
    // the system can't tell (no right, a name that is too long), the name is given all the same: whoever
    // makes it learns the reason.
    virtual QString createUniqueName(const QString& base, const QString& folder);

    // The free hidden path beside a folder under which it is deleted: ".~#~" + the end of its name + "_del_"
    // + a unique suffix.
    virtual QString createNameForDelete(const QString& path);

    // A free absolute path made of the name and a unique suffix, in the folder or, when that is empty, in the
    // temporary folder. With `makeFolder` a folder is made there; empty when that fails.
    virtual QString createTempItem(const QString& name, const QString& folder, bool makeFolder);

    // Makes a new folder in the temporary folder, named after the file (without its extension). Empty when it
    // can't be made.
    virtual QString createTempFolderForFile(const QString& file);

    // A free path in the temporary folder for a file of the name; the extension stays at the end. Empty when
    // there is no temporary folder.
    virtual QString getTempFilePath(const QString& fileName);

    // Writes a DOM node as a UTF-8 XML file whose attributes keep the order that they have in the file being
    // replaced; attributes that are new follow by name. (QDomDocument itself forgets their order.) An element
    // is known again by its name and position. The file is replaced whole; this is the one operation that
    // replaces.
    [[nodiscard]] virtual bool saveXmlNodeKeepingAttributesOrder(const QDomNode& node, const QString& path);

private:
    struct HeldFolder
    {
        int count = 0;
        std::shared_ptr<FileSystem::FolderLock> lock;
    };

    void LogFailure(const QString& operation, const char* message, const QString& path,
                    const boost::system::error_code& error = {}) const;
    void LogAttempt(const QString& operation, const char* what, int attempt, const QString& path) const;
    [[nodiscard]] bool waitBeforeRetry(std::chrono::milliseconds pause) const;
    [[nodiscard]] bool retryRename(const QString& source, const QString& destination,
                                   const QString& operation, const QString& what);
    boost::system::error_code renameOnce(const QString& source, const QString& destination);
    boost::system::error_code changeCase(const QString& source, const QString& destination);
    [[nodiscard]] bool flushCopy(const QString& path, FileSystem::ItemKind kind);
    [[nodiscard]] bool moveAcrossVolumes(const QString& source, const QString& destination,
                                         FileSystem::ItemKind kind);
    bool isRenameTargetFree(const QString& source, const QString& destination);

    [[nodiscard]] bool removeFolderContent(QDir* folder);
    [[nodiscard]] bool removeSubfolder(QDir* folder, const QString& name);
    [[nodiscard]] bool removeEntries(const QString& folder, const QStringList& wildcards);

    [[nodiscard]] bool copyEntry(const QString& source, const QString& destination);
    [[nodiscard]] bool copyThroughHiddenFile(const QString& source, const QString& destination);
    [[nodiscard]] bool copyContent(const QString& source, const QString& destination, QString* reason);
    [[nodiscard]] bool copyCompanion(const QString& source, const QString& destination);
    [[nodiscard]] bool completeCopy(const QString& source, const QString& destination);
    [[nodiscard]] bool setOwnerRights(const QString& path, const char* message);

    [[nodiscard]] bool checkFolder(const QString& folder, const QString& operation);
    [[nodiscard]] bool checkItem(const QString& item, const QString& operation, qint64* count);
    template <typename Answer>
    [[nodiscard]] bool checkListing(const QString& folder, const QString& operation,
                                    const boost::system::error_code& error, Answer* answer);
    QString getHiddenPath(const QString& path);
    QString getTemporaryFolder() const;

    ILogInterface* mLog = nullptr;
    CancelHook mIsCancelled;
    RetryPauses mPauses;
    std::mutex mDeleteNameMutex;
    std::mutex mTempItemMutex;
    std::mutex mHeldFoldersMutex;
    std::map<QString, HeldFolder> mHeldFolders;
};
}  // namespace Morvane
