#include "export/KeptMark.h"

#include "foundation/files/FileSystem.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"
#include "foundation/trace/GTrace.h"

#include <QCryptographicHash>

namespace
{
using Morvane::FileSystem::ItemKind;

bool IsThere(const GPathName& path)
{
    return Morvane::FileSystem::getItemKind(path.GetPortablePath()) != ItemKind::None;
}

// Of one length, as the item's own name may be as long as names can be.
GPathName GetMark(const GPathName& path)
{
    const GBuffer hash = QCryptographicHash::hash(path.GetLeaf().toUtf8(), QCryptographicHash::Sha1).toHex();
    return path.GetParent().GetChild(QLatin1Char('.') + QString::fromLatin1(hash.left(16)) +
                                     QStringLiteral(".kept"));
}
}  // namespace

void KeptMark::Set(const GPathName& path)
{
    if (GFileCalls::CreateNewFile(GetMark(path)).IsOpen() || IsSet(path))
        return;
    GTrace::Error(
        QStringLiteral("KeptMark::Set"),
        QStringLiteral("\"%1\" may be removed by the next start: it is still listed as temporary. %2")
            .arg(path.GetNativePath(), GetReasonText(GetLastSystemError())));
}

bool KeptMark::IsSet(const GPathName& path)
{
    return IsThere(GetMark(path));
}

void KeptMark::Remove(const GPathName& path)
{
    GFileSystemBase::DropFile(GetMark(path));
}
