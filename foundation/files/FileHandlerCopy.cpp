#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"
#include "foundation/system/GSystemError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Morvane
{
using FileSystem::ItemKind;

namespace
{
QString getReason(const FileSystem::Error& error)
{
    const QString reason = GetReasonText(error);
    return reason.isEmpty() ? QStringLiteral("unknown error") : reason;
}

bool exists(const QString& path)
{
    return FileSystem::getItemKind(path) != ItemKind::None;
}
}  // namespace

bool FileHandler::copyFile(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFile");
    const QString from = ConvertPath(source);
    const QString to = ConvertPath(destination);
    if (!QFileInfo::exists(from)) {
        LogError(operation, QLatin1String("File does not exists: ") + from);
        return false;
    }
    if (!QFileInfo(from).isFile()) {
        LogError(operation, QStringLiteral("Cannot copy file '%1'.").arg(from));
        return false;
    }
    if (exists(to)) {
        LogError(operation, QLatin1String("Can't copy file, a file with the same name existed: ") + to);
        return false;
    }
    return copyThroughHiddenFile(from, to) && copyCompanion(from, to);
}

bool FileHandler::copyCompanion(const QString& source, const QString& destination)
{
    const QString companion = getCompanionPath(source);
    const QString newCompanion = getCompanionPath(destination);
    if (companion.isEmpty() || newCompanion.isEmpty() || !exists(companion))
        return true;
    return copyFile(companion, newCompanion);
}

bool FileHandler::copyThroughHiddenFile(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFile");
    const QString hidden = getHiddenPath(destination);
    if (exists(hidden)) {
        LogError(operation, QLatin1String("Temporary 'hidden' file already exists: ") + hidden);
        return false;
    }
    QFile file(source);
    if (!file.copy(hidden)) {
        LogError(operation, QLatin1String("Can't copy file: ") + source);
        FileSystem::removeItem(hidden);
        return false;
    }
    CopyDateTimeInfo(QFileInfo(source).canonicalFilePath(), hidden);
    if (FileSystem::renameItem(hidden, destination)) {
        LogError(operation, QLatin1String("Can't create destination file: ") + destination);
        FileSystem::removeItem(hidden);
        return false;
    }
    return true;
}

bool FileHandler::copyFolder(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFolder");
    const QString from = QFileInfo(ConvertPath(source)).absoluteFilePath();
    const QString to = QFileInfo(ConvertPath(destination)).absoluteFilePath();
    const auto fail = [&](const char* message, const QString& path) {
        LogError(operation, QLatin1String(message) + path);
        return false;
    };
    if (FileSystem::getItemKind(from) != ItemKind::Folder)
        return fail("File or folder does not exists: ", from);
    if (exists(to))
        return fail("Destination directory already exists: ", to);
    if (to.startsWith(from + QLatin1Char('/')))
        return fail("Can't copy dir: ", from);
    if (!QDir().mkpath(QFileInfo(to).absolutePath()))
        return fail("Can't create destination dir: ", QFileInfo(to).absolutePath());

    const QString hidden = getHiddenPath(to);
    if (exists(hidden))
        return fail("Destination 'hidden' directory already exists: ", hidden);
    if (!QDir().mkdir(hidden))
        return fail("Can't create 'hidden' directory: ", hidden);
    if (!copyFolderPrivate(from, hidden)) {
        removeFolder(hidden);
        return fail("Can't copy dir: ", from);
    }
    if (!renameFolder(hidden, to)) {
        removeFolder(hidden);
        return fail("Can't rename dir: ", hidden);
    }
    return true;
}

bool FileHandler::copyFolderPrivate(const QString& source, const QString& destination)
{
    for (const QString& name : listEntriesToCarry(source)) {
        if (!copyEntry(QDir(source).filePath(name), QDir(destination).filePath(name))) {
            LogError(QStringLiteral("FileHandler::copyFolderPrivate"),
                     QLatin1String("Failed to copy folder: ") + source);
            return false;
        }
    }
    // Last: writing into the folder would change its date, and may not be allowed any more.
    CopyDateTimeInfo(source, destination);
    QFile::setPermissions(destination, QFile::permissions(source));
    return true;
}

bool FileHandler::copyEntry(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFolderPrivate");
    switch (FileSystem::getItemKind(source)) {
        case ItemKind::File:
            return copyFile(source, destination);
        case ItemKind::Folder:
            if (!QDir().mkdir(destination)) {
                LogError(operation, QLatin1String("Can't create directory: ") + destination);
                return false;
            }
            return copyFolderPrivate(source, destination);
        case ItemKind::Link:
            if (!FileSystem::copyLink(source, destination))
                return true;
            break;
        case ItemKind::None:
        case ItemKind::Other:
            break;
    }
    LogError(operation, QStringLiteral("Cannot copy file '%1'.").arg(source));
    return false;
}

bool FileHandler::CopyDateTimeInfo(const QString& source, const QString& destination)
{
    const QString to = ConvertPath(destination);
    const FileSystem::Error error = FileSystem::copyDateTimes(ConvertPath(source), to);
    if (error)
        LogError(QStringLiteral("FileHandler::CopyDateTimeInfo"),
                 QStringLiteral("Cannot set datetime info for %1: %2").arg(to, getReason(error)));
    return !error;
}

bool FileHandler::CopyCreationDateTime(const QString& source, const QString& destination)
{
    const QString to = ConvertPath(destination);
    const FileSystem::Error error = FileSystem::copyCreationDateTime(ConvertPath(source), to);
    if (error)
        LogError(QStringLiteral("FileHandler::CopyCreationDateTime"),
                 QStringLiteral("Cannot set datetime info for %1: %2").arg(to, getReason(error)));
    return !error;
}

bool FileHandler::GetDateTimeInfo(const QString& path, FileSystem::DateTimes* times)
{
    const QString item = ConvertPath(path);
    const FileSystem::Error error = FileSystem::getDateTimes(item, times);
    if (error)
        LogError(QStringLiteral("FileHandler::GetDateTimeInfo"),
                 QStringLiteral("Cannot get datetime info for %1: %2").arg(item, getReason(error)));
    return !error;
}
}  // namespace Morvane
