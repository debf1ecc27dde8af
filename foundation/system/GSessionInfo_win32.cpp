#include "foundation/system/GSessionInfo.h"

#include "foundation/system/GFileSystemBase.h"

#include <windows.h>

uint32_t GSessionInfo::GetOwnSessionID()
{
    return GetSessionID(GetCurrentProcessId());
}

uint32_t GSessionInfo::GetSessionID(uint32_t processID)
{
    DWORD session = 0;
    return ProcessIdToSessionId(processID, &session) ? session : cUnknown;
}

std::vector<GString> GSessionInfo::GetObjectNamePrefixes()
{
    return {QStringLiteral("Local\\Morvane%1_").arg(GFileSystemBase::GetRootMark())};
}

GString GSessionInfo::GetGlobalObjectNamePrefix()
{
    return QStringLiteral("Global\\Morvane%1_").arg(GFileSystemBase::GetRootMark());
}
