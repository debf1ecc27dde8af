#include "foundation/files/LongPath.h"

#include <QDir>

namespace
{
const QLatin1String cLongPrefix("\\\\?\\");
const QLatin1String cLongUncPrefix("\\\\?\\UNC\\");
const QLatin1String cDevicePrefix("\\\\.\\");

QString toBackslashes(QString path)
{
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

bool hasPrefix(const QString& backslashed)
{
    return backslashed.startsWith(cLongPrefix) || backslashed.startsWith(cDevicePrefix);
}

bool isDrivePath(const QString& backslashed)
{
    const QChar letter = backslashed.size() >= 3 ? backslashed.at(0).toUpper() : QChar();
    return letter >= QLatin1Char('A') && letter <= QLatin1Char('Z') &&
           backslashed.at(1) == QLatin1Char(':') && backslashed.at(2) == QLatin1Char('\\');
}
}  // namespace

bool Morvane::isUncPathText(const QString& path)
{
    const QString backslashed = toBackslashes(path);
    return backslashed.size() > 2 && backslashed.startsWith(QLatin1String("\\\\")) &&
           !hasPrefix(backslashed) && backslashed.at(2) != QLatin1Char('\\');
}

QString Morvane::toLongPath(const QString& path)
{
    const QString backslashed = toBackslashes(path);
    if (hasPrefix(backslashed))
        return backslashed;
    if (isUncPathText(backslashed))
        return cLongUncPrefix + backslashed.mid(2);
    if (isDrivePath(backslashed))
        return cLongPrefix + backslashed;
    return QDir::toNativeSeparators(path);
}

QString Morvane::fromLongPath(const QString& path)
{
    // Elsewhere a backslash is a character like any other, and no path has these prefixes.
    if (QDir::separator() != QLatin1Char('\\'))
        return QDir::cleanPath(path);
    if (path.startsWith(cLongUncPrefix))
        return QDir::cleanPath(QLatin1String("//") +
                               QDir::fromNativeSeparators(path.mid(cLongUncPrefix.size())));
    if (path.startsWith(cLongPrefix))
        return QDir::cleanPath(QDir::fromNativeSeparators(path.mid(cLongPrefix.size())));
    return QDir::cleanPath(QDir::fromNativeSeparators(path));
}
