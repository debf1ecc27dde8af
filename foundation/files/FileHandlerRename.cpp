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
bool exists(const QString& path, FileSystem::Error* error)
{
    return !path.isEmpty() && FileSystem::getItemKind(path, error) != ItemKind::None;
}

bool exists(const QString& path)
{
    FileSystem::Error error;
    return exists(path, &error);
}

QString getFolder(const QString& path)
{
    return QFileInfo(path).absolutePath();
}

// Brings a file, or a folder with all that is in it, to the disk. What is not there, or no file, has nothing
// to bring; what can't be looked at is an error.
FileSystem::Error flushTree(const QString& path)
{
    FileSystem::Error error;
    const ItemKind kind = FileSystem::getItemKind(path, &error);
    if (error || (kind != ItemKind::File && kind != ItemKind::Folder))
        return error;
    if (kind == ItemKind::File)
        return FileSystem::flushFile(path);
    for (const QString& name : listEntries(path, &error))
        error = error ? error : flushTree(QDir(path).filePath(name));
    return error ? error : FileSystem::flushFolder(path);
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
    if (retryRename(companion, getCompanionPath(to), operation, QStringLiteral("file")))
        return true;
    // The two stay together.
    if (const FileSystem::Error error = renameOnce(to, from))
        LogFailure(operation, "Failed to rename file: ", to, error);
    return false;
}

// Neither the file nor its companion may meet a file of that name.
bool FileHandler::isRenameTargetFree(const QString& source, const QString& destination)
{
    QString taken;
    FileSystem::Error error;
    if (exists(destination, &error) && !isSameItem(source, destination))
        taken = destination;
    const QString companion = getCompanionPath(source);
    const QString newCompanion = getCompanionPath(destination);
    if (taken.isEmpty() && exists(companion) && exists(newCompanion, &error) &&
        !isSameItem(companion, newCompanion))
        taken = newCompanion;
    if (taken.isEmpty())
        return true;
    LogFailure(QStringLiteral("FileHandler::renameFile"),
               "Can't rename file, a file with the same name existed: ", taken, error);
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
    // Only what has reached the disk may cost the source.
    if (!flushCopy(destination, kind)) {
        // A copy that stays is in the log; the source has everything.
        static_cast<void>(isFolder ? removeFolder(destination) : removeFile(destination));
        return false;
    }
    if (!(isFolder ? removeFolder(source) : removeFile(source))) {
        LogError(operation, QStringLiteral("Failed to remove %1: %2").arg(what, source));
        return false;
    }
    return true;
}

bool FileHandler::flushCopy(const QString& path, ItemKind kind)
{
    FileSystem::Error error = flushTree(path);
    if (!error && kind != ItemKind::Folder)
        error = flushTree(getCompanionPath(path));
    if (!error)
        error = FileSystem::flushFolder(getFolder(path));
    if (error)
        LogFailure(QStringLiteral("FileHandler::copyFile"), "Can't create destination file: ", path, error);
    return !error;
}

// One loop for files and folders; `what` is the word in the line of a failed attempt.
bool FileHandler::retryRename(const QString& source, const QString& destination, const QString& operation,
                              const QString& what)
{
    if (source == destination)
        return true;
    FileSystem::Error error;
    for (int attempt = 1; attempt <= cAttempts; ++attempt) {
        error = renameOnce(source, destination);
        if (!error)
            return true;
        LogAttempt(operation, QString(QLatin1String("rename ") + what).toLatin1().constData(), attempt,
                   source);
        if (!waitBeforeRetry(mPauses.rename))
            break;
    }
    LogFailure(
        operation,
        QString(QLatin1String("Failed to rename ") + what + QLatin1String(": ")).toLatin1().constData(),
        source, error);
    return false;
}

FileSystem::Error FileHandler::renameOnce(const QString& source, const QString& destination)
{
    if (!LockFolder(source))
        return boost::system::errc::make_error_code(boost::system::errc::device_or_resource_busy);
    const FileSystem::Error error = source != destination && isSameItem(source, destination)
                                        ? changeCase(source, destination)
                                        : FileSystem::renameItem(source, destination);
    static_cast<void>(UnlockFolder(source));  // logs it where nothing was locked
    return error;
}

// Through a name between, for file systems that take a change of case for no change.
FileSystem::Error FileHandler::changeCase(const QString& source, const QString& destination)
{
    const QString hidden = getHiddenPath(source);
    if (const FileSystem::Error error = FileSystem::renameItem(source, hidden))
        return error;
    const FileSystem::Error error = FileSystem::renameItem(hidden, destination);
    if (error)
        FileSystem::renameItem(hidden, source);
    return error;
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
    FileSystem::Error error;
    if (exists(to, &error) && !isSameItem(from, to)) {
        LogFailure(operation, "Destination directory already exists: ", to, error);
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
    FileSystem::Error error;
    const QStringList names = listEntriesToCarry(from, &error);
    if (error)
        LogFailure(operation, "Can't find folder: ", from, error);
    bool isMoved = !error;
    for (const QString& name : names)
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

    FileSystem::Error error;
    const QStringList names = listEntriesToCarry(from, &error);
    if (error)
        LogFailure(operation, "Can't find folder: ", from, error);
    bool isMoved = !error;
    for (const QString& name : names) {
        const QString entry = QDir(from).filePath(name);
        const bool isFolder = FileSystem::getItemKind(entry) == ItemKind::Folder;
        const QString target = QDir(to).filePath(name);
        isMoved &= isFolder ? moveFolderData(entry, target) : renameFile(entry, target);
    }
    if (!isMoved)
        return false;
    error = FileSystem::removeEmptyFolder(from);
    if (error)
        LogFailure(operation, "Can't remove empty subfolder: ", from, error);
    return !error;
}
}  // namespace Morvane
