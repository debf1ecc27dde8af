#pragma once

#include <QDateTime>
#include <QString>

#include <cstdint>
#include <memory>
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
    bool write(const char* bytes, int size);

    // Adds rights, the nine bits of a file mode, to those that the file has. Windows knows none.
    bool addMode(int mode);
    bool setModified(const QDateTime& moment);
    FileIdentity getIdentity() const;

    // Closes the file. False when the system reports a late failure to write.
    bool close();

private:
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
    bool makeFolder(const QString& name) const;

    // Makes a file that is not there yet. Null when it could not be made, or is there.
    std::unique_ptr<ZipFile> makeFile(const QString& name) const;

    // What stands at a name, and which file it is.
    Found look(const QString& name, FileIdentity& identity) const;

    // Puts a file of this folder at the place of another, which may be there, in one step.
    bool replaceFile(const QString& from, const QString& to) const;

    bool removeFile(const QString& name) const;

    // Removes an empty folder.
    bool removeFolder(const QString& name) const;

    bool addMode(int mode) const;

private:
    struct Place;

    explicit ZipFolder(std::unique_ptr<Place> place);

    std::unique_ptr<Place> mPlace;
};
}  // namespace Morvane
