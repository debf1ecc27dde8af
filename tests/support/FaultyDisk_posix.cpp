#include "tests/support/FaultyDisk.h"

#include <QFile>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>

bool MountSmallDisk(const QString& folder, int bytes)
{
    const QByteArray size = "size=" + QByteArray::number(bytes);
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size.constData()) == 0;
}

bool LimitFileSize(int bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}
