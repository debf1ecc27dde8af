#include "foundation/core/SharedFile.h"
#include "foundation/files/CompanionFile.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

static constexpr int cChunkSize = 256 * 1024;

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

bool exists(const QString& path, FileSystem::Error* error)
{
    return FileSystem::getItemKind(path, error) != ItemKind::None;
}

// Makes a folder with those above it that are missing.
FileSystem::Error makeFolders(const QString& path)
{
    if (QFileInfo(path).isDir())
        return {};
    const FileSystem::Error error = FileSystem::makeFolder(path);
    if (!error || QFileInfo(path).isDir())
        return {};
    const QString parent = QFileInfo(path).absolutePath();
    if (error != boost::system::errc::no_such_file_or_directory || parent == path)
        return error;
    const FileSystem::Error parentError = makeFolders(parent);
    return parentError ? parentError : FileSystem::makeFolder(path);
}

QString inBrackets(const QString& reason)
{
    return reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason);
}
}  // namespace

bool FileHandler::copyFile(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFile");
    const QString from = ConvertPath(source);
    const QString to = ConvertPath(destination);
    FileSystem::Error error;
    const ItemKind kind = FileSystem::getItemKind(from, &error);
    if (kind == ItemKind::None) {
        LogFailure(operation, "File does not exists: ", from);
        return false;
    }
    if (kind != ItemKind::File && kind != ItemKind::Link) {
        LogError(operation, QStringLiteral("Cannot copy file '%1'.").arg(from) +
                                (error ? inBrackets(getReason(error)) : QString()));
        return false;
    }
    if (exists(to, &error)) {
        LogFailure(operation, "Can't copy file, a file with the same name existed: ", to, error);
        return false;
    }
    return copyThroughHiddenFile(from, to) && completeCopy(from, to);
}

// Copies the companion as well. Without it there is no copy, and the next attempt finds the name free.
bool FileHandler::completeCopy(const QString& source, const QString& destination)
{
    if (copyCompanion(source, destination))
        return true;
    if (const FileSystem::Error error = FileSystem::removeItem(destination))
        LogFailure(QStringLiteral("FileHandler::copyFile"), "Can't remove file: ", destination, error);
    return false;
}

bool FileHandler::copyCompanion(const QString& source, const QString& destination)
{
    const QString companion = getCompanionPath(source);
    const QString newCompanion = getCompanionPath(destination);
    FileSystem::Error error;
    if (companion.isEmpty() || newCompanion.isEmpty() || !exists(companion, &error))
        return true;
    if (error) {
        LogFailure(QStringLiteral("FileHandler::copyFile"), "Can't copy file: ", companion, error);
        return false;
    }
    return copyFile(companion, newCompanion);
}

bool FileHandler::copyThroughHiddenFile(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFile");
    const QString hidden = getHiddenPath(destination);
    FileSystem::Error error;
    if (exists(hidden, &error)) {
        LogFailure(operation, "Temporary 'hidden' file already exists: ", hidden, error);
        return false;
    }
    QString reason;
    if (!copyContent(source, hidden, &reason)) {
        LogError(operation, QLatin1String("Can't copy file: ") + source + inBrackets(reason));
        return false;
    }
    // A date that can't be kept is in the log.
    static_cast<void>(CopyDateTimeInfo(QFileInfo(source).canonicalFilePath(), hidden));
    error = FileSystem::renameItem(hidden, destination);
    if (error) {
        LogFailure(operation, "Can't create destination file: ", destination, error);
        FileSystem::removeItem(hidden);
    }
    return !error;
}

// Makes the destination, and removes it again when that fails half-way.
bool FileHandler::copyContent(const QString& source, const QString& destination, QString* reason)
{
    QFile from(source);
    QFile to(destination);
    if (OpenSharedForReading(from, cNoLargestFile, *reason) != FileOpening::cOpen)
        return false;
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        *reason = to.errorString();
        return false;
    }
    std::vector<char> chunk(cChunkSize);
    qint64 count = 0;
    bool isWritten = true;
    while (isWritten && (count = from.read(chunk.data(), cChunkSize)) > 0)
        isWritten = GFileCalls::WriteAll(to, chunk.data(), count);
    *reason = count < 0 ? from.errorString() : to.errorString();
    to.close();
    isWritten = isWritten && count == 0;
    if (isWritten) {
        const bool isClosed = to.error() == QFileDevice::NoError;
        const FileSystem::Error error =
            isClosed ? FileSystem::copyRights(source, destination) : FileSystem::Error();
        if (isClosed && !error)
            return true;
        *reason = isClosed ? getReason(error) : to.errorString();
    }
    FileSystem::removeItem(destination);
    return false;
}

bool FileHandler::copyFolder(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFolder");
    const QString from = QFileInfo(ConvertPath(source)).absoluteFilePath();
    const QString to = QFileInfo(ConvertPath(destination)).absoluteFilePath();
    FileSystem::Error error;
    const auto fail = [&](const char* message, const QString& path) {
        LogFailure(operation, message, path, error);
        return false;
    };
    if (FileSystem::getItemKind(from, &error) != ItemKind::Folder)
        return fail("File or folder does not exists: ", from);
    if (exists(to, &error))
        return fail("Destination directory already exists: ", to);
    if (to.startsWith(from + QLatin1Char('/')))
        return fail("Can't copy dir: ", from);
    error = makeFolders(QFileInfo(to).absolutePath());
    if (error)
        return fail("Can't create destination dir: ", QFileInfo(to).absolutePath());

    const QString hidden = getHiddenPath(to);
    if (exists(hidden, &error))
        return fail("Destination 'hidden' directory already exists: ", hidden);
    error = FileSystem::makeFolder(hidden);
    if (error)
        return fail("Can't create 'hidden' directory: ", hidden);
    if (!copyFolderPrivate(from, hidden)) {
        static_cast<void>(removeFolder(hidden));  // what stays is in the log
        return fail("Can't copy dir: ", from);
    }
    if (!renameFolder(hidden, to)) {
        static_cast<void>(removeFolder(hidden));  // what stays is in the log
        return fail("Can't rename dir: ", hidden);
    }
    return true;
}

bool FileHandler::copyFolderPrivate(const QString& source, const QString& destination)
{
    FileSystem::Error error;
    const QStringList names = listEntriesToCarry(source, &error);
    const bool isCopied = !error && std::all_of(names.cbegin(), names.cend(), [&](const QString& name) {
        return copyEntry(QDir(source).filePath(name), QDir(destination).filePath(name));
    });
    if (!isCopied) {
        LogFailure(QStringLiteral("FileHandler::copyFolderPrivate"), "Failed to copy folder: ", source,
                   error);
        return false;
    }
    // Last: writing into the folder would change its date, and may not be allowed any more.
    static_cast<void>(CopyDateTimeInfo(source, destination));
    error = FileSystem::copyRights(source, destination);
    if (error)
        LogFailure(QStringLiteral("FileHandler::copyFolderPrivate"),
                   "Failed to set permissions for the file or folder: ", destination, error);
    return !error;
}

bool FileHandler::copyEntry(const QString& source, const QString& destination)
{
    const QString operation = QStringLiteral("FileHandler::copyFolderPrivate");
    FileSystem::Error error;
    switch (FileSystem::getItemKind(source, &error)) {
        case ItemKind::File:
            return copyFile(source, destination);
        case ItemKind::Folder:
            error = FileSystem::makeFolder(destination);
            if (!error)
                return copyFolderPrivate(source, destination);
            LogFailure(operation, "Can't create directory: ", destination, error);
            return false;
        case ItemKind::Link:
            error = FileSystem::copyLink(source, destination);
            if (!error)
                return completeCopy(source, destination);
            break;
        case ItemKind::None:
        case ItemKind::Other:
            break;
    }
    LogError(operation, QStringLiteral("Cannot copy file '%1'.").arg(source) +
                            (error ? inBrackets(getReason(error)) : QString()));
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
