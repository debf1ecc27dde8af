#pragma once

#include <QDateTime>
#include <QFileDevice>
#include <QString>
#include <QStringList>

#include <boost/system/error_code.hpp>

#include <memory>

// The system calls that the file handler uses: one attempt each, no retry, no log line. Paths are absolute or
// relative to the current folder, with '/' or native separators, of any length. An operation gives an empty
// error code when it succeeded. No operation follows a link unless it says so.
namespace Morvane::FileSystem
{
using Error = boost::system::error_code;

enum class ItemKind
{
    None,    // nothing has that name
    File,    // a plain file
    Folder,  // a folder that is not a link
    Link,    // a symbolic link or junction, whatever it points to
    Other    // a device, pipe or socket, or an item that the system does not describe
};

struct DateTimes
{
    QDateTime created;  // invalid where the file system does not keep it
    QDateTime modified;
    QDateTime accessed;
};

// If the system can't look, the kind is Other, and the second form tells why: it is not known then whether
// anything has the name.
ItemKind getItemKind(const QString& path);
ItemKind getItemKind(const QString& path, Error* error);

// The names in a folder, including hidden and system entries, without "." and "..", in the order in which the
// system gives them. After an error the list is empty.
Error listFolder(const QString& path, QStringList* names);

// The bytes in a file; for a link, the size of the link itself.
Error getFileSize(const QString& path, qint64* size);

// Makes one folder.
Error makeFolder(const QString& path);

// Gives `destination` the rights of `source`; if `source` is a link, the rights of its target.
Error copyRights(const QString& source, const QString& destination);

// Adds rights of the owner to those that an item has. If it can't see the present rights, it fails, so that
// it removes none.
Error addOwnerRights(const QString& path, QFileDevice::Permissions added);

// Flushes what was written to a file to the disk.
Error flushFile(const QString& path);

// Flushes the names in a folder to the disk; on Windows the system does that by itself.
Error flushFolder(const QString& path);

// Removes a file or a link, never what the link points to. Also removes a read-only file.
Error removeItem(const QString& path);
Error removeEmptyFolder(const QString& path);

// Renames a file, folder or link within one volume. Never replaces: a taken name is an error.
Error renameItem(const QString& source, const QString& destination);

// Makes a link at `destination` that points to the same place as the one at `source`.
Error copyLink(const QString& source, const QString& destination);

// Whether both are on one volume. If an item does not exist, the nearest existing folder above it counts.
bool areOnSameVolume(const QString& one, const QString& other);

// The bytes that the user may still write to the volume of the path.
Error getFreeSpace(const QString& path, qint64* bytes);

// False for a drive without a medium.
bool hasMedium(const QString& path);

Error getDateTimes(const QString& path, DateTimes* times);

// Gives `destination` the dates of `source` in full precision: the modification and access date, and the
// creation date where the system lets a program set it.
Error copyDateTimes(const QString& source, const QString& destination);

// The creation date alone; an error where the system has no call for it.
Error copyCreationDateTime(const QString& source, const QString& destination);

// Moves a file or folder to the user's recycle bin.
Error moveToTrash(const QString& path);

// The unchanged target text of a link: a symbolic link's text, or the target path of a shell link file. Empty
// when the path is not a link.
QString readLinkTarget(const QString& path);

// While this object lives, the folder can't be renamed or removed, as far as the system can prevent that.
// Win32: an open handle that does not share deletion. POSIX: a shared advisory lock on the folder. A program
// that does not want the folder to change takes the exclusive lock.
class FolderLock
{
public:
    explicit FolderLock(const QString& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    // False when somebody else holds the folder. A folder that can't be locked at all (no right to read it,
    // no locks on the file system) counts as held.
    bool isHeld() const;

private:
    struct Handle;
    std::unique_ptr<Handle> mHandle;
};
}  // namespace Morvane::FileSystem
