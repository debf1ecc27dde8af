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

// File and folder operations that work in spite of short disturbances: a virus scanner that holds a file for
// a moment, a folder that another program has not left yet, a network volume that answers late.
//
// Common rules. Paths are absolute, or relative to the current folder, with '/' or native separators and of
// any length; results have '/' separators. An operation gives false when it did not do all of its work. It
// has then logged an error line with the source "FileHandler::" + its name, and with the system's reason, if
// there is one, in brackets at the end. Nothing is thrown. An item whose state is not known never counts as
// missing, and a folder that can't be read whole never counts as empty. An operation on a file includes its
// AppleDouble companion ("._" + file name, beside it). Nothing that exists is ever replaced. A symbolic link
// or junction is removed, renamed or copied as a link and never followed, except where a single operation's
// comment says so. A new item gets its name when it is complete; until then it has a hidden name that begins
// with ".~#~".
//
// Every operation is virtual and the operations call each other through the object, so that a derived class
// can replace single ones. One handler may be used from several threads: names that it makes are never given
// out twice while they are in use. But the caller must make sure that two operations do not work on one item
// at the same time.
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

    // Sets where log lines go; null, the default, drops them. The handler does not own it. Set it before
    // threads share the handler.
    virtual void setLogInterface(ILogInterface* log);

    // Writes one line with the source and level to the log interface.
    virtual void LogAssert(const QString& source, const QString& message) const;
    virtual void LogDebug(const QString& source, const QString& message) const;
    virtual void LogError(const QString& source, const QString& message) const;

    void setRetryPauses(const RetryPauses& pauses) { mPauses = pauses; }

    // Called at least every 50 ms while an operation waits to try again; if it gives true, the operation
    // gives up at once, as after its last attempt. Called on the thread of the operation. When an operation
    // begins to wait, this is logged at error level, so that a person who sees a program stand still learns
    // why; further attempts are logged at debug level.
    using CancelHook = std::function<bool()>;
    void setCancelHook(const CancelHook& isCancelled) { mIsCancelled = isCancelled; }

    // --- Remove ---

    // Removes a file or a link, then its companion. Up to 20 attempts, 500 ms apart. A file that does not
    // exist, or that disappears meanwhile, counts as removed.
    [[nodiscard]] virtual bool removeFile(const QString& path);

    // The same without the companion, which may belong to somebody else.
    [[nodiscard]] virtual bool removeFileAlone(const QString& path);

    // Removes a folder with everything in it. The folder is first renamed to a hidden name, so that its own
    // name is free at once even if some content can't be removed. If the path is a link to a folder, only the
    // link is removed. A folder that does not exist counts as removed.
    [[nodiscard]] virtual bool removeFolder(const QString& path);

    // Empties a folder and keeps it. If an entry can't be removed, goes on with the next one. The second form
    // removes only the entries whose names match one of the wildcards ("*", "?", "[...]", without regard to
    // case).
    [[nodiscard]] virtual bool cleanupFolder(const QString& folder);
    [[nodiscard]] virtual bool cleanupFolder(const QString& folder, const QStringList& wildcards);

    // Moves a file or folder to the user's recycle bin, without any window. The companion stays.
    // Win32: an item with a path of 260 characters or more can't be moved there. It is deleted instead, which
    // works for files. POSIX: the freedesktop trash; needs Qt 5.15.
    [[nodiscard]] virtual bool moveToRecycleBin(const QString& path);

    // --- Rename and move ---

    // renameFolder for a folder, renameFile for anything else.
    [[nodiscard]] virtual bool rename(const QString& source, const QString& destination);

    // Renames or moves a file or link to a full path, with its companion. Up to 20 attempts, 1000 ms apart;
    // a move to another volume is done by copying and removing. The destination's folder must exist. If the
    // new name is that of the file's own companion, the file replaces the companion.
    [[nodiscard]] virtual bool renameFile(const QString& source, const QString& destination);

    // Renames or moves a folder in the same way. When the copy to another volume fails, the source stays
    // whole.
    [[nodiscard]] virtual bool renameFolder(const QString& source, const QString& destination);

    // Puts the prefix before the name of a file or folder.
    [[nodiscard]] virtual bool renameAddPrefix(const QString& path, const QString& prefix);

    // Renames as `rename` does, and then checks that the destination is there and the source is gone. For
    // volumes that report a rename as done but keep the old name.
    [[nodiscard]] virtual bool renameFE(const QString& source, const QString& destination);

    // Moves a file to a full path; makes the destination's folder if it is missing.
    [[nodiscard]] virtual bool moveFile(const QString& source, const QString& destination);

    // Moves everything in a folder into another folder, which is made if it is missing; the empty source
    // folder stays. If an entry's name is taken there, the entry stays where it is and the result is false;
    // the others are still moved.
    [[nodiscard]] virtual bool moveFolderContent(const QString& source, const QString& destination);

    // Moves a folder to a full path; if a folder is there already, the two are merged, sub-folder by
    // sub-folder. Each source folder that became empty is removed. A file whose name is taken stays, as
    // above.
    [[nodiscard]] virtual bool moveFolderData(const QString& source, const QString& destination);

    // Lock and unlock the folder of an item around a rename, so that nobody removes the folder meanwhile.
    // LockFolder gives false when somebody else holds the folder. Calls can be nested; `path` is the path of
    // the item.
    [[nodiscard]] virtual bool LockFolder(const QString& path);
    [[nodiscard]] virtual bool UnlockFolder(const QString& path);

    // --- Copy ---

    // Copies a file's content, dates and permissions, and its companion. A link as `source` is followed here:
    // the copy is a file. The destination's folder must be there.
    [[nodiscard]] virtual bool copyFile(const QString& source, const QString& destination);

    // Copies a folder with everything in it, links as links, to a new folder; folders above it are made.
    // Fails if there are pipes, sockets or devices in it. A folder is not copied into itself.
    [[nodiscard]] virtual bool copyFolder(const QString& source, const QString& destination);

    // The inner step of copyFolder: copies the content of one folder into another existing folder, and ends
    // at the first failure.
    [[nodiscard]] virtual bool copyFolderPrivate(const QString& source, const QString& destination);

    // Gives `destination` the modification and access date of `source`, and its creation date where the
    // system can set that.
    [[nodiscard]] virtual bool CopyDateTimeInfo(const QString& source, const QString& destination);
    [[nodiscard]] virtual bool GetDateTimeInfo(const QString& path, FileSystem::DateTimes* times);

    // The creation date alone. Always false on POSIX, which has no call for it.
    [[nodiscard]] virtual bool CopyCreationDateTime(const QString& source, const QString& destination);

    // Gives the owner the right to read and write a file, or a folder and everything in it. Links are
    // skipped.
    [[nodiscard]] virtual bool setRWPermissions(const QString& path);

    // --- Ask ---

    // Reads a whole file; follows a link. A missing file and one that can't be read are failures; `content`
    // is then empty.
    [[nodiscard]] virtual bool readFile(const QString& path, QByteArray* content);

    // Whether the user can open the file in the mode, or list the folder (ReadOnly) or make files in it
    // (WriteOnly). This is found out by trying, not from the file's attributes. The answer "no" is logged at
    // debug level only.
    [[nodiscard]] virtual bool checkAccess(const QString& path,
                                           QIODevice::OpenMode mode = QIODevice::ReadWrite);

    // Counts in a folder: its own entries of every kind; files and links at any depth; files and links
    // directly in it. The companions count like any file. False when there is no such folder, or when it or a
    // folder in it can't be read; the count is then 0. In the operations below, the list or path is then
    // empty.
    [[nodiscard]] virtual bool countFolderItems(const QString& folder, qint64* count);
    [[nodiscard]] virtual bool getFileCount(const QString& folder, qint64* count);
    [[nodiscard]] virtual bool getTopLevelFileCount(const QString& folder, qint64* count);

    // The absolute paths of the files and links at any depth, sorted.
    [[nodiscard]] virtual bool getFileList(const QString& folder, QStringList* files);

    // The bytes in a file, or in all files at any depth of a folder; targets of links are not counted. The
    // second does the same for companions only: the file's own companion, or all "._" files in a folder.
    [[nodiscard]] virtual bool getByteCount(const QString& path, qint64* bytes);
    [[nodiscard]] virtual bool getDotUnderscoreByteCount(const QString& path, qint64* bytes);

    // Bytes that the user may still write to the volume of the path. The path need not exist yet.
    [[nodiscard]] virtual bool getFreeSpace(const QString& path, qint64* bytes);

    // Look for a file by name below a folder. False without a log line when there is no such file; false with
    // a log line when a folder that could hold it can't be read. findFile takes the file nearest to the top.
    // findFileDepthFirst searches each sub-folder before the files beside that sub-folder. Among equals, the
    // first in the order of names is taken. Names are compared as the file system does.
    [[nodiscard]] virtual bool findFile(const QString& folder, const QString& name, QString* found);
    [[nodiscard]] virtual bool findFileDepthFirst(const QString& folder, const QString& name, QString* found);

    // Like findFile, by wildcard ("*", "?", "[...]", without regard to case): the first, or all, sorted.
    // Companions are found only by a wildcard that begins with "._".
    [[nodiscard]] virtual bool findFileByWildcard(const QString& folder, const QString& wildcard,
                                                  QString* found);
    [[nodiscard]] virtual bool findFilesByWildcard(const QString& folder, const QString& wildcard,
                                                   QStringList* found);

    // Whether both paths are on one volume. For a path that does not exist yet, the folder that would hold it
    // counts.
    [[nodiscard]] virtual bool checkSameVolume(const QString& one, const QString& other);

    // False for a drive without a medium, and for a path on no volume at all.
    virtual bool hasDiskInDrive(const QString& path);

    // The extension, without the dot, of a link's target (Win32: a shell link file; POSIX: a symbolic link).
    // False when the path is not such a link; an extension may be empty.
    [[nodiscard]] virtual bool getExtensionFromLink(const QString& link, QString* extension);

    // --- Texts and names ---

    // "1999 bytes", "1.95 KB", "12.3 MB": three significant digits below 999.5 of a unit, four up to 1999.5.
    virtual QString formatSize(qint64 bytes);

    // The form of an absolute Windows path that removes the limit of 260 characters ("\\?\C:\a",
    // "\\?\UNC\srv\share\a"). Relative paths, device paths and POSIX paths come back unchanged.
    virtual QString longFileName(const QString& path);
    virtual bool isUncPath(const QString& path);

    // The form that the operations work with: '/' separators, no "\\?\", no "." and "..".
    virtual QString ConvertPath(const QString& path);

    // Cuts the separators at the end off the path; a root keeps its own. True when there were any.
    [[nodiscard]] virtual bool splitOffSlashesFromPath(QString* path);

    // The first free path of the series "x.pdf", "x_2.pdf", "x_3.pdf" ... for a file or folder. False, and
    // the path unchanged, when 9999 are taken.
    [[nodiscard]] virtual bool getVersionName(const QString& path, QString* versionPath);

    // Completes the destination of a copy or move of `source`. If `destination` is a folder, or if the source
    // is one, the source's own name is added. If that name is taken, it becomes the next free version name.
    [[nodiscard]] virtual bool UpdateFileDestination(const QString& source, QString* destination);
    [[nodiscard]] virtual bool UpdateFolderDestination(const QString& source, QString* destination);

    // base + "_" + five hexadecimal digits, a name that is free in the folder. The name is not reserved. If
    // the system can't tell whether it is free (no right, a name that is too long), the name is still given:
    // making the item will then show the reason.
    virtual QString createUniqueName(const QString& base, const QString& folder);

    // The free hidden path beside a folder under which it is deleted: ".~#~" + the end of its name + "_del_"
    // + a unique suffix.
    virtual QString createNameForDelete(const QString& path);

    // A free absolute path made from the name and a unique suffix, in the folder or, when `folder` is empty,
    // in the temporary folder. With `makeFolder` a folder is made at that path; the result is empty when that
    // fails.
    virtual QString createTempItem(const QString& name, const QString& folder, bool makeFolder);

    // Makes a new folder in the temporary folder, named after the file (without its extension). Empty when it
    // can't be made.
    virtual QString createTempFolderForFile(const QString& file);

    // A free path in the temporary folder for a file with this name; the extension stays at the end. Empty
    // when there is no temporary folder.
    virtual QString getTempFilePath(const QString& fileName);

    // Writes a DOM node as a UTF-8 XML file. The attributes keep the order that they have in the file that is
    // replaced; new attributes follow, sorted by name. (QDomDocument itself forgets their order.) Elements
    // are matched by name and position. The file is replaced whole; this is the only operation that replaces
    // something.
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
