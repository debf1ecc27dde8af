#include "foundation/core/SharedFile.h"
#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Morvane
{
using FileSystem::ItemKind;

namespace
{
// Adds the size of the item itself: a link has none.
FileSystem::Error addOwnSize(const QString& path, qint64* bytes)
{
    FileSystem::Error error;
    qint64 size = 0;
    if (FileSystem::getItemKind(path, &error) == ItemKind::File)
        error = FileSystem::getFileSize(path, &size);
    *bytes += size;
    return error;
}

// Adds up the wanted files in a folder, or, where the item is none, the size of the one file.
FileSystem::Error sumBytes(const QString& item, const QString& file,
                           const std::function<bool(const QString&)>& isWanted, qint64* bytes)
{
    FileSystem::Error error;
    const bool isInFolder = FileSystem::getItemKind(item, &error) == ItemKind::Folder;
    if (error || !isInFolder)
        return error ? error : addOwnSize(file, bytes);
    const FileSystem::Error visited = visitFiles(item, [&](const QString& path) {
        if (isWanted(path) && !error)
            error = addOwnSize(path, bytes);
    });
    return error ? error : visited;
}

enum class Order
{
    FilesFirst,
    FoldersFirst
};

// The first file below the folder whose name is wanted; empty when there is none, and after an error.
QString searchFile(const QString& folder, Order order, const std::function<bool(const QString&)>& isWanted,
                   FileSystem::Error* error)
{
    const QStringList names = listSortedEntries(folder, error);
    const auto searchOwnFiles = [&]() -> QString {
        for (const QString& name : names) {
            const QString path = QDir(folder).filePath(name);
            if (isWanted(path) && FileSystem::getItemKind(path, error) != ItemKind::Folder)
                return path;
        }
        return {};
    };
    QString found = order == Order::FilesFirst ? searchOwnFiles() : QString();
    for (const QString& name : names) {
        const QString path = QDir(folder).filePath(name);
        if (found.isEmpty() && !*error && FileSystem::getItemKind(path, error) == ItemKind::Folder)
            found = searchFile(path, order, isWanted, error);
    }
    if (*error)
        return {};
    return found.isEmpty() && order == Order::FoldersFirst ? searchOwnFiles() : found;
}

// A name that the file system takes for the same: it finds the entry under the name that was asked for.
bool isNamed(const QString& path, const QString& name)
{
    const QString own = QFileInfo(path).fileName();
    return own == name || (own.compare(name, Qt::CaseInsensitive) == 0 &&
                           QFileInfo(path) == QFileInfo(QFileInfo(path).dir(), name));
}

bool matchesFile(const QString& path, const QString& wildcard)
{
    return matchesWildcard(QFileInfo(path).fileName(), wildcard) &&
           (!isCompanion(path) || wildcard.startsWith(QLatin1String("._")));
}
}  // namespace

// What is known of a folder that could not be read whole is not given: it is too little.
template <typename Answer>
bool FileHandler::checkListing(const QString& folder, const QString& operation,
                               const FileSystem::Error& error, Answer* answer)
{
    if (!error)
        return true;
    *answer = Answer();
    LogFailure(operation, "Can't read folder: ", folder, error);
    return false;
}

bool FileHandler::checkFolder(const QString& folder, const QString& operation)
{
    FileSystem::Error error;
    if (FileSystem::getItemKind(folder, &error) == ItemKind::Folder)
        return true;
    LogFailure(operation, "Can't find folder: ", folder, error);
    return false;
}

bool FileHandler::readFile(const QString& path, QByteArray* content)
{
    content->clear();
    QFile file(ConvertPath(path));
    QString reason;
    const FileOpening opening = OpenSharedForReading(file, cNoLargestFile, reason);
    if (opening == FileOpening::cOpen) {
        const GResult read = ReadToEnd(file, content);
        if (read.HasSucceeded())
            return true;
        reason = read.GetReason();
    }
    const bool isMissing = opening == FileOpening::cMissing;
    LogError(QStringLiteral("FileHandler::readFile"),
             isMissing ? QLatin1String("File does not exists: ") + file.fileName()
                       : QStringLiteral("Can't copy file: %1 (%2)").arg(file.fileName(), reason));
    return false;
}

bool FileHandler::checkAccess(const QString& path, QIODevice::OpenMode mode)
{
    const QString item = ConvertPath(path);
    bool isAllowed = true;
    if (QFileInfo(item).isDir()) {
        if (mode.testFlag(QIODevice::ReadOnly))
            isAllowed = QDir(item).isReadable();
        if (isAllowed && mode.testFlag(QIODevice::WriteOnly)) {
            const QString probe = createTempItem(QStringLiteral(".~#~access"), item, true);
            isAllowed = !probe.isEmpty() && !FileSystem::removeEmptyFolder(probe);
        }
    } else {
        // Appending makes no file shorter.
        const bool isWritten = mode.testFlag(QIODevice::WriteOnly);
        isAllowed = QFileInfo(item).isFile() && QFile(item).open(isWritten ? mode | QIODevice::Append : mode);
    }
    if (!isAllowed)
        LogDebug(QStringLiteral("FileHandler::checkAccess"),
                 QLatin1String("File or folder does not exists: ") + item);
    return isAllowed;
}

bool FileHandler::countFolderItems(const QString& folder, qint64* count)
{
    *count = 0;
    const QString path = ConvertPath(folder);
    if (!checkFolder(path, QStringLiteral("FileHandler::countFolderItems")))
        return false;
    FileSystem::Error error;
    *count = listEntries(path, &error).size();
    return checkListing(path, QStringLiteral("FileHandler::countFolderItems"), error, count);
}

bool FileHandler::getFileCount(const QString& folder, qint64* count)
{
    *count = 0;
    const QString path = ConvertPath(folder);
    if (!checkFolder(path, QStringLiteral("FileHandler::getFileCount")))
        return false;
    const FileSystem::Error error = visitFiles(path, [count](const QString&) { ++*count; });
    return checkListing(path, QStringLiteral("FileHandler::getFileCount"), error, count);
}

bool FileHandler::getTopLevelFileCount(const QString& folder, qint64* count)
{
    *count = 0;
    const QString path = ConvertPath(folder);
    if (!checkFolder(path, QStringLiteral("FileHandler::getTopLevelFileCount")))
        return false;
    FileSystem::Error error;
    for (const QString& name : listEntries(path, &error)) {
        FileSystem::Error own;
        *count += FileSystem::getItemKind(QDir(path).filePath(name), &own) == ItemKind::Folder ? 0 : 1;
        error = error ? error : own;
    }
    return checkListing(path, QStringLiteral("FileHandler::getTopLevelFileCount"), error, count);
}

bool FileHandler::getFileList(const QString& folder, QStringList* files)
{
    files->clear();
    const QString path = QFileInfo(ConvertPath(folder)).absoluteFilePath();
    if (!checkFolder(path, QStringLiteral("FileHandler::getFileList")))
        return false;
    const FileSystem::Error error = visitFiles(path, [files](const QString& file) { files->append(file); });
    files->sort();
    return checkListing(path, QStringLiteral("FileHandler::getFileList"), error, files);
}

bool FileHandler::getByteCount(const QString& path, qint64* bytes)
{
    const QString item = ConvertPath(path);
    const QString operation = QStringLiteral("FileHandler::getByteCount");
    const auto isAny = [](const QString&) { return true; };
    return checkItem(item, operation, bytes) &&
           checkListing(item, operation, sumBytes(item, item, isAny, bytes), bytes);
}

bool FileHandler::getDotUnderscoreByteCount(const QString& path, qint64* bytes)
{
    const QString item = ConvertPath(path);
    const QString operation = QStringLiteral("FileHandler::getDotUnderscoreByteCount");
    return checkItem(item, operation, bytes) &&
           checkListing(item, operation, sumBytes(item, getCompanionPath(item), isCompanion, bytes), bytes);
}

// The counterpart of checkFolder for what may be a file too; the count begins at 0.
bool FileHandler::checkItem(const QString& item, const QString& operation, qint64* count)
{
    *count = 0;
    if (FileSystem::getItemKind(item) != ItemKind::None)
        return true;
    LogError(operation, QLatin1String("File or folder does not exists: ") + item);
    return false;
}

bool FileHandler::getFreeSpace(const QString& path, qint64* bytes)
{
    *bytes = 0;
    const QString item = ConvertPath(path);
    if (!FileSystem::getFreeSpace(item, bytes))
        return true;
    LogError(QStringLiteral("FileHandler::getFreeSpace"), QLatin1String("Can't find folder: ") + item);
    return false;
}

bool FileHandler::findFile(const QString& folder, const QString& name, QString* found)
{
    const auto isWanted = [&name](const QString& path) { return isNamed(path, name); };
    FileSystem::Error error;
    *found = searchFile(ConvertPath(folder), Order::FilesFirst, isWanted, &error);
    return checkListing(folder, QStringLiteral("FileHandler::findFile"), error, found) && !found->isEmpty();
}

bool FileHandler::findFileDepthFirst(const QString& folder, const QString& name, QString* found)
{
    const auto isWanted = [&name](const QString& path) { return isNamed(path, name); };
    FileSystem::Error error;
    *found = searchFile(ConvertPath(folder), Order::FoldersFirst, isWanted, &error);
    return checkListing(folder, QStringLiteral("FileHandler::findFileDepthFirst"), error, found) &&
           !found->isEmpty();
}

bool FileHandler::findFileByWildcard(const QString& folder, const QString& wildcard, QString* found)
{
    const auto isWanted = [&wildcard](const QString& path) { return matchesFile(path, wildcard); };
    FileSystem::Error error;
    *found = searchFile(ConvertPath(folder), Order::FilesFirst, isWanted, &error);
    return checkListing(folder, QStringLiteral("FileHandler::findFileByWildcard"), error, found) &&
           !found->isEmpty();
}

bool FileHandler::findFilesByWildcard(const QString& folder, const QString& wildcard, QStringList* found)
{
    found->clear();
    const FileSystem::Error error = visitFiles(ConvertPath(folder), [&](const QString& file) {
        if (matchesFile(file, wildcard))
            found->append(file);
    });
    found->sort();
    return checkListing(folder, QStringLiteral("FileHandler::findFilesByWildcard"), error, found) &&
           !found->isEmpty();
}
}  // namespace Morvane
