#include "tests/support/FaultyDisk.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

static bool WriteSystemFile(const char* path, const QByteArray& text)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

// An ordinary user may mount what only he sees in a namespace in which he stays who he is.
static bool EnterMountNamespace()
{
    if (unshare(CLONE_NEWNS) == 0)
        return true;
    const QByteArray user = QByteArray::number(geteuid());
    const QByteArray group = QByteArray::number(getegid());
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && WriteSystemFile("/proc/self/setgroups", "deny") &&
           WriteSystemFile("/proc/self/uid_map", user + ' ' + user + " 1") &&
           WriteSystemFile("/proc/self/gid_map", group + ' ' + group + " 1");
}

bool MountSmallDisk(const QString& folder, int bytes)
{
    const QByteArray size = "size=" + QByteArray::number(bytes);
    return EnterMountNamespace() && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size.constData()) == 0;
}

bool MountDiskThatClaimsNothing(const QString& folder)
{
    return EnterMountNamespace() && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("ramfs", QFile::encodeName(folder).constData(), "ramfs", 0, "mode=0700") == 0;
}

bool LimitFileSize(int bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}
