#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"
#include "foundation/system/GSystemError.h"

#include <QDir>
#include <QFileInfo>

namespace Morvane
{
using FileSystem::ItemKind;

bool FileHandler::removeFile(const QString& path)
{
    const QString file = ConvertPath(path);
    if (!removeFileAlone(file))
        return false;
    const QString companion = getCompanionPath(file);
    if (companion.isEmpty() || FileSystem::getItemKind(companion) == ItemKind::None)
        return true;
    return removeFile(companion);
}

bool FileHandler::removeFileAlone(const QString& path)
{
    const QString source = QStringLiteral("FileHandler::removeFile");
    const QString file = ConvertPath(path);
    for (int attempt = 1;; ++attempt) {
        const FileSystem::Error error = FileSystem::removeItem(file);
        if (!error || FileSystem::getItemKind(file) == ItemKind::None)
            return true;
        LogAttempt(source, "delete file", attempt, file);
        if (!waitBeforeRetry(mPauses.remove) || attempt == cAttempts) {
            LogFailure(source, "Failed to remove file: ", file, error);
            return false;
        }
    }
}

bool FileHandler::removeFolder(const QString& path)
{
    const QString source = QStringLiteral("FileHandler::removeFolder");
    const QString folder = QFileInfo(ConvertPath(path)).absoluteFilePath();
    FileSystem::Error error;
    const ItemKind kind = FileSystem::getItemKind(folder, &error);
    if (error) {
        LogFailure(source, "Failed to remove folder: ", folder, error);
        return false;
    }
    if (kind != ItemKind::Folder)
        return kind == ItemKind::None || removeFile(folder);

    const QString hidden = createNameForDelete(folder);
    if (FileSystem::getItemKind(hidden, &error) != ItemKind::None) {
        LogFailure(source, "Hidden dir already exists: ", hidden, error);
        return false;
    }
    if (!renameFolder(folder, hidden)) {
        LogError(source, QLatin1String("Failed to remove folder: ") + folder);
        return false;
    }
    QDir content(hidden);
    if (removeFolderContent(&content)) {
        error = FileSystem::removeEmptyFolder(hidden);
        if (!error)
            return true;
    }
    LogFailure(source, "Failed to remove folder: ", hidden, error);
    return false;
}

// Goes on past what can't be removed, so that as little as possible stays behind.
bool FileHandler::removeFolderContent(QDir* folder)
{
    FileSystem::Error error;
    const QStringList names = listEntries(folder->path(), &error);
    if (error)
        LogFailure(QStringLiteral("FileHandler::removeFolder"), "Can't remove subfolder: ", folder->path(),
                   error);
    bool isEmpty = !error;
    for (const QString& name : names) {
        const QString entry = folder->filePath(name);
        const ItemKind kind = FileSystem::getItemKind(entry, &error);
        if (error) {
            LogFailure(QStringLiteral("FileHandler::removeFolder"), "Can't remove file: ", entry, error);
            isEmpty = false;
        } else if (kind == ItemKind::Folder) {
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
        LogFailure(source, "Can't remove subfolder: ", path, GetLastSystemError());
        return false;
    }
    const bool isEmpty = removeFolderContent(folder);
    if (!folder->cdUp()) {
        const FileSystem::Error error = GetLastSystemError();
        LogFailure(source, isEmpty ? "Can't make cdUp from empty subfolder: " : "Can't make cdUp: ", path,
                   error);
        return false;
    }
    if (!isEmpty) {
        LogError(source, QLatin1String("Can't remove subfolder: ") + path);
        return false;
    }
    const FileSystem::Error error = FileSystem::removeEmptyFolder(path);
    if (error)
        LogFailure(source, "Can't remove empty subfolder: ", path, error);
    return !error;
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
    FileSystem::Error error;
    const QStringList names = listEntries(folder, &error);
    if (error)
        LogFailure(source, "File can not be removed: ", folder, error);
    bool isClean = !error;
    for (const QString& name : names) {
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
        LogFailure(QStringLiteral("FileHandler::moveToRecycleBin"), "File can not be removed: ", item, error);
    return !error;
}
}  // namespace Morvane
