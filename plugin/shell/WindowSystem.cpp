#include "plugin/shell/WindowSystem.h"

#include "foundation/trace/GTrace.h"
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

// Qt ends the process for one that is there and can't be loaded, such as one of another Qt. What is loaded
// here stays, for Qt.
bool CanBeLoaded(QPluginLoader& plugIn)
{
    if (plugIn.load())
        return true;
    GTrace::Error(QStringLiteral("WindowSystem"), plugIn.errorString());
    return false;
}

// Reads what the files say about themselves, and loads the one that is meant.
bool HasPlugIn(const QString& platform)
{
    for (const QString& folder : GetPlugInFolders()) {
        for (const QString& file : QDir(folder).entryList(QDir::Files)) {
            QPluginLoader plugIn(folder + QLatin1Char('/') + file);
            const QJsonObject data = plugIn.metaData().value(QLatin1String("MetaData")).toObject();
            for (const QJsonValue& key : data.value(QLatin1String("Keys")).toArray())
                if (key.toString().compare(platform, Qt::CaseInsensitive) == 0 && CanBeLoaded(plugIn))
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
