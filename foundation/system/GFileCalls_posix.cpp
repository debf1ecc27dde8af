#include "foundation/system/GFileCalls.h"

#include "foundation/system/GUniqueName.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

namespace
{
struct FolderCloser
{
    void operator()(DIR* folder) const { closedir(folder); }
};
using FolderStream = std::unique_ptr<DIR, FolderCloser>;

bool IsReadOnly(const struct stat& status)
{
    return (status.st_mode & S_IWUSR) == 0;
}

// Gives the owner every right on an open folder, through the name that the system keeps for the open handle:
// the folder's own name could lead elsewhere by now.
void GrantOwner(int folder)
{
    chmod(("/proc/self/fd/" + std::to_string(folder)).c_str(), S_IRWXU);
}

// Opens a folder for the walk; a link under the name is refused by the system itself, so that nobody can slip
// one in between the look and the step.
FolderStream OpenFolder(int parent, const char* name, bool readOnlyToo)
{
    const PFileHandle handle(openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    const int place = static_cast<int>(handle.Get());
    struct stat status = {};
    if (!handle.IsOpen() || fstat(place, &status) != 0)
        return nullptr;
    if (readOnlyToo && (status.st_mode & S_IRWXU) != S_IRWXU)
        GrantOwner(place);
    PFileHandle folder(openat(place, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FolderStream stream(folder.IsOpen() ? fdopendir(static_cast<int>(folder.Get())) : nullptr);
    if (stream != nullptr)
        folder.Release();
    return stream;
}

// One removal. A process can hold some hundred folders open, a tree can be deeper: what lies at the deepest
// level that is walked is moved up into the tree's top, to be removed from there.
struct Removal
{
    bool readOnlyToo;
    int top = -1;
    bool hasMoved = false;
};
constexpr int cDeepest = 200;

// What is to keep its read-only content stays where it is.
bool MoveToTop(int parent, const char* name, Removal& removal)
{
    const QByteArray freshName = MakeRandomName(16).toLatin1();
    const bool isMoved =
        removal.readOnlyToo && renameat(parent, name, removal.top, freshName.constData()) == 0;
    removal.hasMoved = removal.hasMoved || isMoved;
    return isMoved;
}

bool RemoveEntry(int parent, const char* name, Removal& removal, int depth);

void RemoveContent(DIR* folder, Removal& removal, int depth)
{
    while (const dirent* entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..")
            RemoveEntry(dirfd(folder), name.c_str(), removal, depth + 1);
    }
}

void RemoveContentOfTop(DIR* folder, Removal& removal)
{
    removal.top = dirfd(folder);
    do {
        removal.hasMoved = false;
        rewinddir(folder);
        RemoveContent(folder, removal, 0);
    } while (removal.hasMoved);
}

bool RemoveEntry(int parent, const char* name, Removal& removal, int depth)
{
    struct stat status = {};
    if (fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    if (!removal.readOnlyToo && !S_ISLNK(status.st_mode) && IsReadOnly(status))
        return false;
    const bool isFolder = S_ISDIR(status.st_mode);
    if (const FolderStream folder = isFolder ? OpenFolder(parent, name, removal.readOnlyToo) : nullptr) {
        if (depth == 0)
            RemoveContentOfTop(folder.get(), removal);
        else if (depth == cDeepest && MoveToTop(parent, name, removal))
            return true;
        else
            RemoveContent(folder.get(), removal, depth);
    }
    return unlinkat(parent, name, isFolder ? AT_REMOVEDIR : 0) == 0 || errno == ENOENT;
}

// The second half of a rename by a second name. What fails leaves the old name alone, as it was.
bool TakeOldName(const QByteArray& from, const QByteArray& to)
{
    if (unlink(from.constData()) == 0)
        return true;
    const int error = errno;
    unlink(to.constData());
    errno = error;
    return false;
}

// The kind of what bears the name, 0 when nothing does.
mode_t GetKind(const QByteArray& path)
{
    struct stat status = {};
    return lstat(path.constData(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}
}  // namespace

PFileHandle GFileCalls::CreateNewFile(const GPathName& path)
{
    const QByteArray systemPath = QFile::encodeName(path.GetSystemPath());
    return PFileHandle(
        open(systemPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

bool GFileCalls::FlushFile(const QFile& file)
{
    return fsync(file.handle()) == 0;
}

bool GFileCalls::FlushFolder(const GPathName& folder)
{
    const QByteArray path = QFile::encodeName(folder.GetSystemPath());
    const PFileHandle handle(open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return handle.IsOpen() && fsync(static_cast<int>(handle.Get())) == 0;
}

bool GFileCalls::IsNameTaken(int error)
{
    return error == EEXIST;
}

bool GFileCalls::RenameFile(const GPathName& from, const GPathName& to, bool isReplacing)
{
    const QByteArray fromPath = QFile::encodeName(from.GetSystemPath());
    const QByteArray toPath = QFile::encodeName(to.GetSystemPath());
    if (isReplacing)
        return rename(fromPath.constData(), toPath.constData()) == 0;
    // A second name is never made over one that is there, on any file system that knows them.
    if (link(fromPath.constData(), toPath.constData()) == 0)
        return TakeOldName(fromPath, toPath);
    // File systems without second names say so in various ways.
    constexpr unsigned cNoReplace = 1;
    return errno != EEXIST &&
           renameat2(AT_FDCWD, fromPath.constData(), AT_FDCWD, toPath.constData(), cNoReplace) == 0;
}

bool GFileCalls::RemoveFile(const GPathName& path, bool readOnlyToo)
{
    const QByteArray systemPath = QFile::encodeName(path.GetSystemPath());
    Removal removal{readOnlyToo};
    return GetKind(systemPath) != S_IFDIR && RemoveEntry(AT_FDCWD, systemPath.constData(), removal, 0);
}

bool GFileCalls::RemoveTree(const GPathName& path, bool readOnlyToo)
{
    const QByteArray systemPath = QFile::encodeName(path.GetSystemPath());
    const mode_t kind = GetKind(systemPath);
    Removal removal{readOnlyToo};
    return (kind == 0 || kind == S_IFDIR || kind == S_IFLNK) &&
           RemoveEntry(AT_FDCWD, systemPath.constData(), removal, 0);
}
