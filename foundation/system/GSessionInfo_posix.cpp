#include "foundation/system/GSessionInfo.h"

#include "foundation/system/GFileSystemBase.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace
{
// The folder that the log-in makes for each user and clears when he has left.
bool IsOwnAlone(const GString& folder)
{
    struct stat status = {};
    return lstat(QFile::encodeName(folder).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}
}  // namespace

uint32_t GSessionInfo::GetOwnSessionID()
{
    return geteuid();
}

uint32_t GSessionInfo::GetSessionID(uint32_t processID)
{
    struct stat status = {};
    const QByteArray folder = "/proc/" + QByteArray::number(processID);
    return stat(folder.constData(), &status) == 0 ? status.st_uid : cUnknown;
}

std::vector<GString> GSessionInfo::GetObjectNamePrefixes()
{
    const GString user = QString::number(GetOwnSessionID());
    const GString leaf = QStringLiteral("/Morvane_%1_").arg(user);
    const GPathName root = GFileSystemBase::GetRoot();
    if (!root.IsEmpty())
        return {root.GetChild(QLatin1String("Channel_") + user).GetPortablePath() + leaf};
    const GString folder = QLatin1String("/run/user/") + user;
    const GString shared = QLatin1String("/dev/shm") + leaf;
    return IsOwnAlone(folder) ? std::vector<GString>{folder + leaf, shared} : std::vector<GString>{shared};
}

GString GSessionInfo::GetGlobalObjectNamePrefix()
{
    return GetObjectNamePrefix();
}
