#include "foundation/system/GSessionInfo.h"

#include <sys/stat.h>
#include <unistd.h>

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

GString GSessionInfo::GetObjectNamePrefix()
{
    return QStringLiteral("/Morvane_%1%2_").arg(QString::number(GetOwnSessionID()), GetRootText());
}

GString GSessionInfo::GetGlobalObjectNamePrefix()
{
    return GetObjectNamePrefix();
}
