#include "apps/printer_processor/inbox/InboxCalls.h"

#include "foundation/system/PFileHandle.h"

#include <QFile>

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

bool InboxCalls::FlushFolder(const GPathName& folder)
{
    const PFileHandle handle(open(GetSystemName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return handle.IsOpen() && fsync(static_cast<int>(handle.Get())) == 0;
}

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

void InboxCalls::Hide(const GPathName&) {}
