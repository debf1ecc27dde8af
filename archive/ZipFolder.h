#pragma once

#include "foundation/system/PFileHandle.h"

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

namespace Morvane
{
// Identifies a file on this system under any of its names: volume and number.
using FileIdentity = std::pair<uint64_t, uint64_t>;

// An open file below a destination folder. Closes itself.
class ZipFile
{
public:
    using Handle = intptr_t;

    explicit ZipFile(Handle handle) : mHandle(handle) {}
    ~ZipFile();
    ZipFile(const ZipFile&) = delete;
    ZipFile& operator=(const ZipFile&) = delete;

    // Writes all of it. False when not all could be written.
    [[nodiscard]] bool write(const char* bytes, int size);

    // Adds rights, the nine bits of a file mode, to those that the file has. Windows knows none.
    [[nodiscard]] bool addMode(int mode);

    // Removes everybody's right to write.
    [[nodiscard]] bool setReadOnly();
    [[nodiscard]] bool setModified(const QDateTime& moment);

    // Nothing when the system does not tell.
    std::optional<FileIdentity> getIdentity() const;

    // Owns the file, as GOwnedFile does, until the handle is closed. The handle is not open if the file needs
    // no owner.
    PFileHandle own() const;

    // Closes the file. False when the system reports a late failure to write.
    [[nodiscard]] bool close();

private:
    friend class ZipFolder;

    Handle mHandle;
};

// An open folder at or below a destination folder. Its operations take a single name and never follow a link
// with that name: every folder between the destination and a file was made or opened one by one.
class ZipFolder
{
public:
    enum class Found
    {
        Nothing,
        File,
        ReadOnlyFile,
        Link,
        Other
    };

    ZipFolder(const ZipFolder&) = delete;
    ZipFolder& operator=(const ZipFolder&) = delete;
    ~ZipFolder();

    // Opens the folder with that path, which may lead through links. Null if it is not a folder.
    static std::unique_ptr<ZipFolder> openRoot(const QString& path);

    // Opens a folder in this one. Null if there is none with that name, or if the name is a link.
    std::unique_ptr<ZipFolder> openFolder(const QString& name) const;

    // Makes a folder in this one. False when it could not be made, or exists already.
    [[nodiscard]] bool makeFolder(const QString& name) const;

    // Makes a file that has no name yet. It disappears when its last handle is closed, also when the process
    // is killed. Null if the file system has no such files; Windows has none.
    std::unique_ptr<ZipFile> makeNameless() const;

    // Gives such a file its name. False when that fails, for example because the name is taken.
    [[nodiscard]] bool giveName(const ZipFile& file, const QString& name) const;

    // Makes a new file. Null when it could not be made, or exists already. On Windows the file is deleted
    // when its handle is closed, unless keep() was called.
    std::unique_ptr<ZipFile> makeFile(const QString& name) const;
    [[nodiscard]] static bool keep(const ZipFile& file);

    // What has this name, and which file it is.
    Found look(const QString& name, FileIdentity& identity) const;

    // Renames a file of this folder in one step; a file that has the new name is replaced.
    [[nodiscard]] bool replaceFile(const QString& from, const QString& to) const;

    // A path to the file or folder with this name, for operations that take paths. On POSIX the path uses the
    // open handle, so it means this folder even if the folder is renamed.
    QString getPath(const QString& name) const;

    // Removes an empty folder.
    [[nodiscard]] bool removeFolder(const QString& name) const;

    [[nodiscard]] bool addMode(int mode) const;

private:
    struct Place;

    explicit ZipFolder(std::unique_ptr<Place> place);

    std::unique_ptr<Place> mPlace;
};
}  // namespace Morvane
