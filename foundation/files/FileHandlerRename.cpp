#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"

#include <QDir>
#include <QFileInfo>

namespace Morvane
{
using FileSystem::ItemKind;

namespace
{
bool exists(const QString& path)
{
    return !path.isEmpty() && FileSystem::getItemKind(path) != ItemKind::None;
}

QString getFolder(const QString& path)
{
    return QFileInfo(path).absolutePath();
}

// Two spellings of one name, where the file system takes them for one: a rename that only changes the case.
bool isSameItem(const QString& one, const QString& other)
{
    const QString oneName = QFileInfo(one).fileName();
    const QString otherName = QFileInfo(other).fileName();
    return getFolder(one) == getFolder(other) &&
           (oneName == otherName ||
            (oneName.compare(otherName, Qt::CaseInsensitive) == 0 && QFileInfo(one) == QFileInfo(other)));
}
}  // namespace

bool FileHandler::rename(const QString& source, const QString& destination)
{
    const bool isFolder = FileSystem::getItemKind(ConvertPath(source)) == ItemKind::Folder;
    return isFolder ? renameFolder(source, destination) : renameFile(source, destination);
}

bool FileHandler::renameFile(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::renameFile");
    const QString from = ConvertPath(source);
    const QString to = ConvertPath(destination);
    if (!exists(from)) {
        LogError(operation, QLatin1String("File does not exists: ") + from);
        return false;
    }
    if (getFolder(from) != getFolder(to) && !checkSameVolume(from, to))
        return moveAcrossVolumes(from, to, FileSystem::getItemKind(from));

    const QString companion = getCompanionPath(from);
    if (QFileInfo(to).absoluteFilePath() == QFileInfo(companion).absoluteFilePath() && !companion.isEmpty())
        return removeFile(companion) && retryRename(from, to, operation, QStringLiteral("file"));
    if (!isRenameTargetFree(from, to))
        return false;
    if (!retryRename(from, to, operation, QStringLiteral("file")))
        return false;
    if (companion.isEmpty() || isCompanion(to) || !exists(companion))
        return true;
    return retryRename(companion, getCompanionPath(to), operation, QStringLiteral("file"));
}

// Neither the file nor its companion may meet a file of that name.
bool FileHandler::isRenameTargetFree(const QString& source, const QString& destination)
{
    QString taken;
    if (exists(destination) && !isSameItem(source, destination))
        taken = destination;
    const QString companion = getCompanionPath(source);
    const QString newCompanion = getCompanionPath(destination);
    if (taken.isEmpty() && exists(companion) && exists(newCompanion) && !isSameItem(companion, newCompanion))
        taken = newCompanion;
    if (taken.isEmpty())
        return true;
    LogError(QStringLiteral("FileHandler::renameFile"),
             QLatin1String("Can't rename file, a file with the same name existed: ") + taken);
    return false;
}

bool FileHandler::moveAcrossVolumes(const QString& source, const QString& destination, ItemKind kind)
{
    const bool isFolder = kind == ItemKind::Folder;
    const QString operation =
        isFolder ? QStringLiteral("FileHandler::renameFolder") : QStringLiteral("FileHandler::renameFile");
    const QString what = isFolder ? QStringLiteral("folder") : QStringLiteral("file");
    // A link stays one, where copyFile would make a file of it.
    const bool isCopied = isFolder                 ? copyFolder(source, destination)
                          : kind == ItemKind::Link ? copyEntry(source, destination)
                                                   : copyFile(source, destination);
    if (!isCopied) {
        LogError(operation, QStringLiteral("Failed to copy %1: %2").arg(what, source));
        return false;
    }
    if (!(isFolder ? removeFolder(source) : removeFile(source))) {
        LogError(operation, QStringLiteral("Failed to remove %1: %2").arg(what, source));
        return false;
    }
    return true;
}

// One loop for files and folders; `what` is the word in the line of a failed attempt.
bool FileHandler::retryRename(const QString& source, const QString& destination, const QString& operation,
                              const QString& what)
{
    if (source == destination)
        return true;
    for (int attempt = 1; attempt <= cAttempts; ++attempt) {
        if (renameOnce(source, destination))
            return true;
        LogDebug(operation, QStringLiteral("Failed to rename %1. Will try again after an interval. ( Attempt "
                                           "number %2) : %3. ")
                                .arg(what, QString::number(attempt), source));
        waitBeforeRetry(mPauses.rename);
    }
    LogError(operation, QStringLiteral("Failed to rename %1: %2").arg(what, source));
    return false;
}

bool FileHandler::renameOnce(const QString& source, const QString& destination)
{
    if (!LockFolder(source))
        return false;
    const bool isDone = source != destination && isSameItem(source, destination)
                            ? changeCase(source, destination)
                            : !FileSystem::renameItem(source, destination);
    UnlockFolder(source);
    return isDone;
}

// Through a name between, for file systems that take a change of case for no change.
bool FileHandler::changeCase(const QString& source, const QString& destination)
{
    const QString hidden = getHiddenPath(source);
    if (FileSystem::renameItem(source, hidden))
        return false;
    if (!FileSystem::renameItem(hidden, destination))
        return true;
    FileSystem::renameItem(hidden, source);
    return false;
}

bool FileHandler::renameFolder(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::renameFolder");
    const QString from = ConvertPath(source);
    const QString to = ConvertPath(destination);
    if (!checkFolder(from, operation))
        return false;
    if (getFolder(from) != getFolder(to) && !checkSameVolume(from, to))
        return moveAcrossVolumes(from, to, ItemKind::Folder);
    if (exists(to) && !isSameItem(from, to)) {
        LogError(operation, QLatin1String("Destination directory already exists: ") + to);
        return false;
    }
    return retryRename(from, to, operation, QStringLiteral("folder"));
}

bool FileHandler::renameAddPrefix(const QString& path, const QString& prefix)
{
    const QFileInfo item(ConvertPath(path));
    return rename(item.filePath(), QDir(item.path()).filePath(prefix + item.fileName()));
}

bool FileHandler::renameFE(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::renameFE");
    const QString from = ConvertPath(source);
    const QString to = ConvertPath(destination);
    if (!exists(from)) {
        LogError(operation, QLatin1String("File or folder does not exists: ") + from);
        return false;
    }
    if (!rename(from, to))
        return false;
    if (!exists(to)) {
        LogError(operation, QLatin1String("File or folder does not exists: ") + to);
        return false;
    }
    if (exists(from) && !isSameItem(from, to)) {
        LogError(operation, QLatin1String("File still exists after successful renaming: ") + from);
        return false;
    }
    return true;
}

bool FileHandler::moveFile(const QString& source, const QString& destination)
{
    const QString to = ConvertPath(destination);
    const QString folder = getFolder(to);
    if (!QDir().mkpath(folder)) {
        LogError(QStringLiteral("FileHandler::moveFile"),
                 QLatin1String("Can't create destination folder: ") + folder);
        return false;
    }
    return renameFile(source, to);
}

bool FileHandler::moveFolderContent(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::moveFolderContent");
    const QString from = QFileInfo(ConvertPath(source)).absoluteFilePath();
    const QString to = QFileInfo(ConvertPath(destination)).absoluteFilePath();
    if (!checkFolder(from, operation))
        return false;
    const bool isInside = (to + QLatin1Char('/')).startsWith(from + QLatin1Char('/'));
    if (isInside || !QDir().mkpath(to)) {
        LogError(operation, QLatin1String("Can't create destination folder: ") + to);
        return false;
    }
    bool isMoved = true;
    for (const QString& name : listEntriesToCarry(from))
        isMoved &= rename(QDir(from).filePath(name), QDir(to).filePath(name));
    return isMoved;
}

bool FileHandler::moveFolderData(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::moveFolderData");
    const QString from = QFileInfo(ConvertPath(source)).absoluteFilePath();
    const QString to = QFileInfo(ConvertPath(destination)).absoluteFilePath();
    if (!checkFolder(from, operation))
        return false;
    if ((to + QLatin1Char('/')).startsWith(from + QLatin1Char('/'))) {
        LogError(operation, QLatin1String("Can't create destination dir: ") + to);
        return false;
    }
    if (FileSystem::getItemKind(to) != ItemKind::Folder)
        return renameFolder(from, to);

    bool isMoved = true;
    for (const QString& name : listEntriesToCarry(from)) {
        const QString entry = QDir(from).filePath(name);
        const bool isFolder = FileSystem::getItemKind(entry) == ItemKind::Folder;
        const QString target = QDir(to).filePath(name);
        isMoved &= isFolder ? moveFolderData(entry, target) : renameFile(entry, target);
    }
    if (!isMoved)
        return false;
    if (FileSystem::removeEmptyFolder(from)) {
        LogError(operation, QLatin1String("Can't remove empty subfolder: ") + from);
        return false;
    }
    return true;
}
}  // namespace Morvane
