#include "foundation/system/GSessionInfo.h"

#include "foundation/system/GFileSystemBase.h"

#include <QCryptographicHash>

GString GSessionInfo::GetRootText()
{
    constexpr int cLength = 8;
    const GPathName root = GFileSystemBase::GetRoot();
    if (root.IsEmpty())
        return GString();
    // Two spellings of one root have to give one text where paths take no notice of case.
    const GString lower = root.GetPortablePath().toLower();
    const GString path = GPathName(lower) == root ? lower : root.GetPortablePath();
    const QByteArray digest = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QLatin1Char('_') + QString::fromLatin1(digest.left(cLength));
}
