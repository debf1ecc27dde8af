#include "apps/printer_processor/inbox/InboxCalls.h"

#include "foundation/system/PFileHandle.h"

#include <QDirIterator>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

namespace
{
QByteArray GetSystemName(const GPathName& path)
{
    return QFile::encodeName(path.GetSystemPath());
}
}  // namespace

bool InboxCalls::MakeFolder(const GPathName& folder)
{
    return mkdir(GetSystemName(folder).constData(), S_IRWXU | S_IRWXG | S_IRWXO) == 0;
}

bool InboxCalls::MoveToFreeName(const GPathName& from, const GPathName& to)
{
    const QByteArray source = GetSystemName(from);
    const QByteArray target = GetSystemName(to);
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // A file system without that way: nobody but this process gives names in the inbox while it has its lock.
    struct stat status = {};
    if (lstat(target.constData(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return errno == ENOENT && rename(source.constData(), target.constData()) == 0;
}

bool InboxCalls::IsNameTaken(int error)
{
    return error == EEXIST || error == ENOTEMPTY;
}

InboxCalls::Look InboxCalls::LookAt(const GPathName& path)
{
    struct stat status = {};
    if (stat(GetSystemName(path).constData(), &status) == 0)
        return Look::Found;
    const bool isNone =
        errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG || errno == ELOOP || errno == EINVAL;
    return isNone ? Look::Nothing : Look::Unknown;
}

InboxCalls::Kind InboxCalls::GetKind(const GPathName& path, qint64* size)
{
    struct stat status = {};
    if (lstat(GetSystemName(path).constData(), &status) != 0)
        return errno == ENOENT ? Kind::Other : Kind::Unknown;
    *size = status.st_size;
    return S_ISREG(status.st_mode) ? Kind::File : S_ISDIR(status.st_mode) ? Kind::Folder : Kind::Other;
}

bool InboxCalls::GetState(const QFile& file, State* state)
{
    struct stat status = {};
    if (fstat(file.handle(), &status) != 0)
        return false;
    constexpr qint64 cNanoseconds = 1000000000;
    *state = {status.st_size, status.st_mtim.tv_sec * cNanoseconds + status.st_mtim.tv_nsec};
    return true;
}

bool InboxCalls::ListNames(const GPathName& folder, QStringList* names)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(GetSystemName(folder).constData()), closedir);
    if (!stream)
        return false;
    errno = 0;
    while (const dirent* const entry = readdir(stream.get())) {
        const QString name = QFile::decodeName(entry->d_name);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names->append(name);
        errno = 0;
    }
    return errno == 0;
}

bool InboxCalls::HasModes()
{
    return true;
}

static bool SetRights(const QString& path, gid_t group, std::optional<unsigned> mode)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (lstat(name.constData(), &status) != 0)
        return false;
    // Who is not in the group can't give it; the file is his own then.
    if (status.st_gid != group && lchown(name.constData(), static_cast<uid_t>(-1), group) != 0)
        errno = 0;
    if (!mode)
        return true;
    const unsigned enter = S_ISDIR(status.st_mode) ? (*mode & 0444U) >> 2 : 0;
    return chmod(name.constData(), *mode | enter) == 0;
}

bool InboxCalls::PrepareRights(const GPathName& copy, const GPathName& inbox, std::optional<unsigned> mode)
{
    struct stat folder = {};
    if (stat(GetSystemName(inbox).constData(), &folder) != 0)
        return false;
    QDirIterator items(copy.GetNativePath(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (items.hasNext()) {
        if (!SetRights(items.next(), folder.st_gid, mode))
            return false;
    }
    return SetRights(copy.GetNativePath(), folder.st_gid, mode);
}

bool InboxCalls::InheritRights(const GPathName&)
{
    return true;
}

void InboxCalls::Hide(const GPathName&) {}
