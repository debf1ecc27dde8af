#pragma once

#include <QDateTime>
#include <QFileDevice>
#include <QString>
#include <QStringList>

#include <boost/system/error_code.hpp>

#include <memory>

// The system calls under the file handler: one attempt each, no retry, no log line. Paths are absolute or
// relative to the current folder, with '/' or native separators, of any length. An operation gives an empty
// error code when it did its work. No operation follows a link unless it says so.
namespace Morvane::FileSystem
{
using Error = boost::system::error_code;

enum class ItemKind
{
    None,    // nothing of that name
    File,    // a plain file
    Folder,  // a folder that is no link
    Link,    // a symbolic link or junction, whatever it points to
    Other    // a device, pipe or socket, or what the system won't tell anything about
};

struct DateTimes
{
    QDateTime created;  // invalid where the file system does not keep it
    QDateTime modified;
    QDateTime accessed;
};

// The second form tells why the kind is Other where the system would not look: whether anything bears the
// name is unknown then.
ItemKind getItemKind(const QString& path);
ItemKind getItemKind(const QString& path, Error* error);

// The names in a folder, hidden and system entries among them, without "." and "..", in the order in which
// the system gives them. After an error the list is empty.
Error listFolder(const QString& path, QStringList* names);

// The bytes in a file; of a link those of its own.
Error getFileSize(const QString& path, qint64* size);

// Makes one folder.
Error makeFolder(const QString& path);

// Gives `destination` the rights of `source`, of what it leads to where it is a link.
Error copyRights(const QString& source, const QString& destination);

// Adds rights of the owner to those that an item has. It fails rather than take those away that it can't see.
Error addOwnerRights(const QString& path, QFileDevice::Permissions added);

// Brings what was written to a file to the disk.
Error flushFile(const QString& path);

// Brings the names in a folder to the disk; on Windows the system does that by itself.
Error flushFolder(const QString& path);

// Removes a file or a link, never what the link points to; a read-only mark does not stop it.
Error removeItem(const QString& path);
Error removeEmptyFolder(const QString& path);

// Renames a file, folder or link within one volume. Never replaces: a taken name is an error.
Error renameItem(const QString& source, const QString& destination);

// Makes a link at `destination` that points to the same place as the one at `source`.
Error copyLink(const QString& source, const QString& destination);

// Whether both lie on one volume. An item that is not there is judged by the nearest folder above it that is.
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

// What a link names, as it stands in it: a symbolic link's text, or the target path of a shell link file.
// Empty when the path is no link.
QString readLinkTarget(const QString& path);

// Keeps a folder from being renamed or removed while it lives, as far as the system can.
// Win32: an open handle that does not share deletion. POSIX: a shared advisory lock on the folder, so that a
// program that wants the folder to stand still takes the exclusive one.
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
