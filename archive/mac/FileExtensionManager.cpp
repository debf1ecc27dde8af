#include "archive/mac/FileExtensionManager.h"

#include "archive/mac/AppleDouble.h"
#include "archive/mac/PcExchange.h"
#include "foundation/trace/GTrace.h"

#include <QFileInfo>

namespace Morvane
{
namespace
{
bool hasExtension(const QString& path, const QString& extension)
{
    return QFileInfo(path).suffix().compare(extension, Qt::CaseInsensitive) == 0;
}
}  // namespace

QString FileExtensionManager::getExtension(const QString& file)
{
    const QString source = QStringLiteral("Morvane::FileExtensionManager::getExtension");
    const auto table = PcExchange::instance();
    if (!table) {
        GTrace::Error(source,
                      QLatin1String("Mac file type correspondence table in not initialized; cannot find "
                                    "extension for the file: ") +
                          file);
        return {};
    }
    MacFileInfo info;
    QString extension;
    if (!getFileInfo(file, &info))
        return {};
    if (table->findExtension(info.type, info.creator, &extension)) {
        GTrace::Debug(source,
                      QStringLiteral("Found extension '%4' for Mac type '%1' and creator '%2' of the file "
                                     "'%3'")
                          .arg(info.type, info.creator, file, extension));
        return extension;
    }
    GTrace::Debug(source,
                  QStringLiteral("Cannot find extension for Mac type '%1' and creator '%2' of the file "
                                 "'%3'")
                      .arg(info.type, info.creator, file));
    return {};
}

bool FileExtensionManager::getFileInfo(const QString& file, MacFileInfo* info)
{
    if (file.isEmpty()) {
        GTrace::Error(QStringLiteral("Morvane::FileExtensionManager::getFileInfo"),
                      QStringLiteral("Cannot get file info for the empty file path"));
        return false;
    }
    const QString appleDouble =
        AppleDouble::isAppleDoubleName(file) ? file : AppleDouble::getAppleDouble(file);
    return !appleDouble.isEmpty() && AppleDouble::getMacFileType(appleDouble, info);
}

bool FileExtensionManager::isType(const QString& file, const QString& extension)
{
    if (file.isEmpty()) {
        GTrace::Error(QStringLiteral("Morvane::FileExtensionManager::isType"),
                      QStringLiteral("Cannot check file type for the empty file path"));
        return false;
    }
    if (hasExtension(file, extension))
        return true;
    return PcExchange::instance() && !extension.isEmpty() &&
           getExtension(file).compare(extension, Qt::CaseInsensitive) == 0;
}

QString FileExtensionManager::adjustNameWithExtension(const QString& name, const QString& extension)
{
    if (extension.isEmpty() || hasExtension(name, extension))
        return name;
    return name + QLatin1Char('.') + extension;
}
}  // namespace Morvane
