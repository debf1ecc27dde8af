#include "foundation/files/CompanionFile.h"

#include <QFileInfo>

static const QLatin1String cCompanionPrefix("._");

bool Morvane::isCompanion(const QString& path)
{
    return QFileInfo(path).fileName().startsWith(cCompanionPrefix);
}

QString Morvane::getCompanionPath(const QString& path)
{
    const QFileInfo file(path);
    if (file.fileName().isEmpty() || isCompanion(path))
        return {};
    return file.path() + QLatin1Char('/') + cCompanionPrefix + file.fileName();
}
