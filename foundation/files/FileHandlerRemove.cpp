#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"

#include <QDir>
#include <QFileInfo>

namespace Morvane
{
using FileSystem::ItemKind;

bool FileHandler::removeFile(const QString& path)
{
    const QString source = QStringLiteral("FileHandler::removeFile");
    const QString file = ConvertPath(path);
    int failures = 0;
    while (FileSystem::removeItem(file) && FileSystem::getItemKind(file) != ItemKind::None) {
        waitBeforeRetry(mPauses.remove);
        ++failures;
        LogDebug(source, QStringLiteral("Failed to delete file. Will try again after an interval. ( Attempt "
                                        "number %1) : %2. ")
                             .arg(QString::number(failures), file));
        if (failures == cAttempts) {
            LogError(source, QLatin1String("Failed to remove file: ") + file);
            return false;
        }
    }
    const QString companion = getCompanionPath(file);
    if (companion.isEmpty() || FileSystem::getItemKind(companion) == ItemKind::None)
        return true;
    return removeFile(companion);
}

bool FileHandler::removeFolder(const QString& path)
{
    const QString source = QStringLiteral("FileHandler::removeFolder");
    const QString folder = QFileInfo(ConvertPath(path)).absoluteFilePath();
    const ItemKind kind = FileSystem::getItemKind(folder);
    if (kind == ItemKind::None)
        return true;
    if (kind != ItemKind::Folder)
        return removeFile(folder);

    const QString hidden = createNameForDelete(folder);
    if (FileSystem::getItemKind(hidden) != ItemKind::None) {
        LogError(source, QLatin1String("Hidden dir already exists: ") + hidden);
        return false;
    }
    if (!renameFolder(folder, hidden)) {
        LogError(source, QLatin1String("Failed to remove folder: ") + folder);
        return false;
    }
    QDir content(hidden);
    const bool isEmpty = removeFolderContent(&content);
    if (isEmpty && !FileSystem::removeEmptyFolder(hidden))
        return true;
    LogError(source, QLatin1String("Failed to remove folder: ") + hidden);
    return false;
}

// Goes on past what can't be removed, so that as little as possible stays behind.
bool FileHandler::removeFolderContent(QDir* folder)
{
    bool isEmpty = true;
    for (const QString& name : listEntries(folder->path())) {
        const QString entry = folder->filePath(name);
        if (FileSystem::getItemKind(entry) == ItemKind::Folder) {
            isEmpty &= removeSubfolder(folder, name);
        } else if (!removeFile(entry)) {
            LogError(QStringLiteral("FileHandler::removeFolder"),
                     QLatin1String("Can't remove file: ") + entry);
            isEmpty = false;
        }
    }
    return isEmpty;
}

bool FileHandler::removeSubfolder(QDir* folder, const QString& name)
{
    const QString source = QStringLiteral("FileHandler::removeFolder");
    const QString path = folder->filePath(name);
    if (!folder->cd(name)) {
        LogError(source, QLatin1String("Can't remove subfolder: ") + path);
        return false;
    }
    const bool isEmpty = removeFolderContent(folder);
    if (!folder->cdUp()) {
        LogError(source, (isEmpty ? QLatin1String("Can't make cdUp from empty subfolder: ")
                                  : QLatin1String("Can't make cdUp: ")) +
                             path);
        return false;
    }
    if (!isEmpty) {
        LogError(source, QLatin1String("Can't remove subfolder: ") + path);
        return false;
    }
    if (FileSystem::removeEmptyFolder(path)) {
        LogError(source, QLatin1String("Can't remove empty subfolder: ") + path);
        return false;
    }
    return true;
}

bool FileHandler::cleanupFolder(const QString& folder)
{
    return removeEntries(ConvertPath(folder), {QStringLiteral("*")});
}

bool FileHandler::cleanupFolder(const QString& folder, const QStringList& wildcards)
{
    return removeEntries(ConvertPath(folder), wildcards);
}

bool FileHandler::removeEntries(const QString& folder, const QStringList& wildcards)
{
    const QString source = QStringLiteral("FileHandler::cleanupFolder");
    if (!checkFolder(folder, source))
        return false;
    bool isClean = true;
    for (const QString& name : listEntries(folder)) {
        if (!matchesAnyWildcard(name, wildcards))
            continue;
        const QString entry = QDir(folder).filePath(name);
        const bool isFolder = FileSystem::getItemKind(entry) == ItemKind::Folder;
        if (isFolder ? removeFolder(entry) : removeFile(entry))
            continue;
        LogError(source, QLatin1String("File can not be removed: ") + entry);
        isClean = false;
    }
    return isClean;
}

bool FileHandler::moveToRecycleBin(const QString& path)
{
    const QString item = QFileInfo(ConvertPath(path)).absoluteFilePath();
    const FileSystem::Error error = FileSystem::moveToTrash(item);
    if (error)
        LogError(QStringLiteral("FileHandler::moveToRecycleBin"),
                 QLatin1String("File can not be removed: ") + item);
    return !error;
}
}  // namespace Morvane
