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
// What tells one file from another on this system, whatever it is called: volume and number.
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

    // Takes the right to write from everybody.
    [[nodiscard]] bool setReadOnly();
    [[nodiscard]] bool setModified(const QDateTime& moment);

    // Nothing when the system does not tell.
    std::optional<FileIdentity> getIdentity() const;

    // Owns the file, as GOwnedFile does, until the handle is closed; not open where the file is safe without.
    PFileHandle own() const;

    // Closes the file. False when the system reports a late failure to write.
    [[nodiscard]] bool close();

private:
    friend class ZipFolder;

    Handle mHandle;
};

// An open folder at or below a destination folder. Its operations take a single name and never follow a link
// that stands at it: the way from the destination down to a file is one that was made or found step by step.
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

    // The folder of that path, which may lead through links. Null when it is none.
    static std::unique_ptr<ZipFolder> openRoot(const QString& path);

    // A folder in this one. Null when there is none of that name, or a link.
    std::unique_ptr<ZipFolder> openFolder(const QString& name) const;

    // Makes a folder in this one. False when it could not be made, or is there.
    [[nodiscard]] bool makeFolder(const QString& name) const;

    // Makes a file that has no name yet and goes with its last handle, also that of a process that is killed.
    // Null where the file system knows none; Windows has none.
    std::unique_ptr<ZipFile> makeNameless() const;

    // Gives such a file its name. False when that fails, as it does when the name is taken.
    [[nodiscard]] bool giveName(const ZipFile& file, const QString& name) const;

    // Makes a file that is not there yet. Null when it could not be made, or is there. On Windows it goes
    // with its handle until keep() is called.
    std::unique_ptr<ZipFile> makeFile(const QString& name) const;
    [[nodiscard]] static bool keep(const ZipFile& file);

    // What stands at a name, and which file it is.
    Found look(const QString& name, FileIdentity& identity) const;

    // Puts a file of this folder at the place of another, which may be there, in one step.
    [[nodiscard]] bool replaceFile(const QString& from, const QString& to) const;

    // A path to what stands at a name, for operations that take paths. On POSIX it leads through the open
    // handle: it means this folder, whatever becomes of the folder's own name.
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
