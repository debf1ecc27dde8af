#include "foundation/core/SharedFile.h"
#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Morvane
{
using FileSystem::ItemKind;

namespace
{
bool isFolder(const QString& path)
{
    return FileSystem::getItemKind(path) == ItemKind::Folder;
}

// The size of the item itself: a link has none.
qint64 getOwnSize(const QString& path)
{
    return FileSystem::getItemKind(path) == ItemKind::File ? QFileInfo(path).size() : 0;
}

// Adds up the wanted files in a folder, or, where the item is none, the size of the one file.
bool sumBytes(const QString& item, const QString& file, const std::function<bool(const QString&)>& isWanted,
              qint64* bytes)
{
    if (!isFolder(item)) {
        *bytes = getOwnSize(file);
        return true;
    }
    visitFiles(item, [&](const QString& path) {
        if (isWanted(path))
            *bytes += getOwnSize(path);
    });
    return true;
}

enum class Order
{
    FilesFirst,
    FoldersFirst
};

// The first file below the folder whose name is wanted; empty when there is none.
QString searchFile(const QString& folder, Order order, const std::function<bool(const QString&)>& isWanted)
{
    const QStringList names = listSortedEntries(folder);
    const auto searchOwnFiles = [&]() -> QString {
        for (const QString& name : names) {
            const QString path = QDir(folder).filePath(name);
            if (isWanted(path) && !isFolder(path))
                return path;
        }
        return {};
    };
    QString found = order == Order::FilesFirst ? searchOwnFiles() : QString();
    for (const QString& name : names) {
        const QString path = QDir(folder).filePath(name);
        if (found.isEmpty() && isFolder(path))
            found = searchFile(path, order, isWanted);
    }
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
    *count = listEntries(path).size();
    return true;
}

bool FileHandler::getFileCount(const QString& folder, qint64* count)
{
    *count = 0;
    const QString path = ConvertPath(folder);
    if (!checkFolder(path, QStringLiteral("FileHandler::getFileCount")))
        return false;
    visitFiles(path, [count](const QString&) { ++*count; });
    return true;
}

bool FileHandler::getTopLevelFileCount(const QString& folder, qint64* count)
{
    *count = 0;
    const QString path = ConvertPath(folder);
    if (!checkFolder(path, QStringLiteral("FileHandler::getTopLevelFileCount")))
        return false;
    const QStringList names = listEntries(path);
    *count = std::count_if(names.cbegin(), names.cend(),
                           [&path](const QString& name) { return !isFolder(QDir(path).filePath(name)); });
    return true;
}

bool FileHandler::getFileList(const QString& folder, QStringList* files)
{
    files->clear();
    const QString path = QFileInfo(ConvertPath(folder)).absoluteFilePath();
    if (!checkFolder(path, QStringLiteral("FileHandler::getFileList")))
        return false;
    visitFiles(path, [files](const QString& file) { files->append(file); });
    files->sort();
    return true;
}

bool FileHandler::getByteCount(const QString& path, qint64* bytes)
{
    const QString item = ConvertPath(path);
    return checkItem(item, QStringLiteral("FileHandler::getByteCount"), bytes) &&
           sumBytes(
               item, item, [](const QString&) { return true; }, bytes);
}

bool FileHandler::getDotUnderscoreByteCount(const QString& path, qint64* bytes)
{
    const QString item = ConvertPath(path);
    return checkItem(item, QStringLiteral("FileHandler::getDotUnderscoreByteCount"), bytes) &&
           sumBytes(item, getCompanionPath(item), isCompanion, bytes);
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
    *found = searchFile(ConvertPath(folder), Order::FilesFirst, isWanted);
    return !found->isEmpty();
}

bool FileHandler::findFileDepthFirst(const QString& folder, const QString& name, QString* found)
{
    const auto isWanted = [&name](const QString& path) { return isNamed(path, name); };
    *found = searchFile(ConvertPath(folder), Order::FoldersFirst, isWanted);
    return !found->isEmpty();
}

bool FileHandler::findFileByWildcard(const QString& folder, const QString& wildcard, QString* found)
{
    const auto isWanted = [&wildcard](const QString& path) { return matchesFile(path, wildcard); };
    *found = searchFile(ConvertPath(folder), Order::FilesFirst, isWanted);
    return !found->isEmpty();
}

bool FileHandler::findFilesByWildcard(const QString& folder, const QString& wildcard, QStringList* found)
{
    found->clear();
    visitFiles(ConvertPath(folder), [&](const QString& file) {
        if (matchesFile(file, wildcard))
            found->append(file);
    });
    found->sort();
    return !found->isEmpty();
}
}  // namespace Morvane
