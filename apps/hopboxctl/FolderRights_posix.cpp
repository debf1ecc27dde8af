#include "apps/hopboxctl/FolderRights.h"

#include "apps/hopboxctl/ShellWord.h"

#include <QFile>

static constexpr QFileDevice::Permissions cOthersWrite = QFileDevice::WriteGroup | QFileDevice::WriteOther;

bool FolderRights::MayOthersWrite(const QString& folder)
{
    return (QFile::permissions(folder) & cOthersWrite) != 0;
}

bool FolderRights::MayAnybodyWrite(const QString& folder)
{
    return (QFile::permissions(folder) & QFileDevice::WriteOther) != 0;
}

bool FolderRights::CloseToOthers(const QString& folder)
{
    const QFileDevice::Permissions rights = QFile::permissions(folder);
    // Nothing where the system does not tell them, and then none may be set.
    return rights != 0 && QFile::setPermissions(folder, rights & ~cOthersWrite);
}

QString FolderRights::GetClosingCommand(const QString& folder)
{
    return QStringLiteral("chmod go-w %1").arg(ShellWord::Quote(folder));
}

QString FolderRights::GetCommandAgainstAnybody(const QString& folder)
{
    return QStringLiteral("chmod o-w %1").arg(ShellWord::Quote(folder));
}
