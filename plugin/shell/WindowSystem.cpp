#include "plugin/shell/WindowSystem.h"

#include "plugin/shell/RefusalText.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

namespace
{
// "xcb;offscreen:a=b" names two platforms; what follows the colon is for the platform itself.
QStringList GetPlatforms()
{
    QStringList platforms;
    for (const QString& entry : qEnvironmentVariable("QT_QPA_PLATFORM").split(QLatin1Char(';')))
        if (const QString name = entry.section(QLatin1Char(':'), 0, 0); !name.isEmpty())
            platforms.append(name);
    return platforms.isEmpty() ? WindowSystem::GetDefaultPlatforms() : platforms;
}

QStringList GetPlugInFolders()
{
    QStringList folders;
    for (const QString& path : QCoreApplication::libraryPaths())
        folders.append(path + QStringLiteral("/platforms"));
    folders.append(qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH"));
    folders.removeAll(QString());
    return folders;
}

// Reads what the files say about themselves; loads none of them.
bool HasPlugIn(const QString& platform)
{
    for (const QString& folder : GetPlugInFolders()) {
        for (const QString& file : QDir(folder).entryList(QDir::Files)) {
            const QJsonObject data = QPluginLoader(folder + QLatin1Char('/') + file).metaData();
            const QJsonArray keys =
                data.value(QLatin1String("MetaData")).toObject().value(QLatin1String("Keys")).toArray();
            for (const QJsonValue& key : keys)
                if (key.toString().compare(platform, Qt::CaseInsensitive) == 0)
                    return true;
        }
    }
    return false;
}

GString FindPlatformFault(const QString& platform)
{
    return HasPlugIn(platform)
               ? WindowSystem::FindDisplayFault(platform)
               : RefusalText::Translate("RefusalText", "Qt's platform plug-in \"%1\" is missing.")
                     .arg(platform);
}
}  // namespace

GString WindowSystem::FindFault()
{
    GString first;
    for (const QString& platform : GetPlatforms()) {
        const GString fault = FindPlatformFault(platform);
        if (fault.isEmpty())
            return {};
        if (first.isEmpty())
            first = fault;
    }
    return first;
}
