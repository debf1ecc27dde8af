#include "foundation/system/GSessionInfo.h"

#include "foundation/system/GFileSystemBase.h"

#include <windows.h>

#include <QCryptographicHash>

namespace
{
// An underscore and the first digits of the digest of MORVANE_ROOT's path; empty without one. Two spellings
// of one root have to give one text.
GString GetRootText()
{
    constexpr int cLength = 8;
    const GPathName root = GFileSystemBase::GetRoot();
    if (root.IsEmpty())
        return GString();
    const QByteArray path = root.GetPortablePath().toLower().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex();
    return QLatin1Char('_') + QString::fromLatin1(digest.left(cLength));
}
}  // namespace

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
    return {QStringLiteral("Local\\Morvane%1_").arg(GetRootText())};
}

GString GSessionInfo::GetGlobalObjectNamePrefix()
{
    return QStringLiteral("Global\\Morvane%1_").arg(GetRootText());
}
