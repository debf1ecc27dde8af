#include "foundation/files/FileHandler.h"

#include "foundation/files/FileSystem.h"
#include "foundation/files/FolderEntries.h"
#include "foundation/files/LongPath.h"
#include "foundation/files/XmlNodeWriter.h"
#include "foundation/system/GSystemError.h"
#include "foundation/trace/ILogInterface.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <condition_variable>
#include <iterator>
#include <mutex>

namespace Morvane
{
FileHandler::FileHandler() = default;
FileHandler::~FileHandler() = default;

void FileHandler::setLogInterface(ILogInterface* log)
{
    mLog = log;
}

void FileHandler::LogAssert(const QString& source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(LogLevel::Assert, source, message);
}

void FileHandler::LogDebug(const QString& source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(LogLevel::Debug, source, message);
}

void FileHandler::LogError(const QString& source, const QString& message) const
{
    if (mLog != nullptr)
        mLog->log(LogLevel::Error, source, message);
}

void FileHandler::LogFailure(const QString& operation, const char* message, const QString& path,
                             const boost::system::error_code& error) const
{
    const QString reason = error ? QStringLiteral(" (%1)").arg(GetReasonText(error)) : QString();
    LogError(operation, QLatin1String(message) + path + reason);
}

// `what` is what is tried, as "delete file".
void FileHandler::LogAttempt(const QString& operation, const char* what, int attempt,
                             const QString& path) const
{
    const QString line =
        QStringLiteral("Failed to %1. Will try again after an interval. ( Attempt number %2) : %3. ")
            .arg(QLatin1String(what), QString::number(attempt), path);
    if (attempt == 1)
        LogError(operation, line);
    else
        LogDebug(operation, line);
}

// False when the wait was cancelled. The condition is nobody's to signal: the wait ends with the time.
bool FileHandler::waitBeforeRetry(std::chrono::milliseconds pause) const
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds cLongestStep{50};
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock<std::mutex> lock(mutex);
    for (const auto end = Clock::now() + pause; Clock::now() < end;) {
        if (mIsCancelled && mIsCancelled())
            return false;
        const auto step = std::min(end, Clock::now() + cLongestStep);
        condition.wait_until(lock, step, [step] { return Clock::now() >= step; });
    }
    return true;
}

bool FileHandler::LockFolder(const QString& path)
{
    const QString folder = QFileInfo(ConvertPath(path)).absolutePath();
    const std::lock_guard<std::mutex> guard(mHeldFoldersMutex);
    HeldFolder& held = mHeldFolders[folder];
    if (held.count == 0)
        held.lock = std::make_shared<FileSystem::FolderLock>(folder);
    if (!held.lock->isHeld()) {
        mHeldFolders.erase(folder);
        return false;
    }
    ++held.count;
    return true;
}

bool FileHandler::UnlockFolder(const QString& path)
{
    const QString folder = QFileInfo(ConvertPath(path)).absolutePath();
    const std::lock_guard<std::mutex> guard(mHeldFoldersMutex);
    const auto held = mHeldFolders.find(folder);
    if (held == mHeldFolders.end()) {
        LogAssert(QStringLiteral("FileHandler::UnlockFolder"), QLatin1String("Can't find folder: ") + folder);
        return false;
    }
    if (--held->second.count == 0)
        mHeldFolders.erase(held);
    return true;
}

QString FileHandler::formatSize(qint64 bytes)
{
    constexpr double cUnitLimit = 1999.5;
    constexpr double cThreeDigitLimit = 999.5;
    constexpr double cUnitFactor = 1024;
    static const char* const cUnits[] = {"%1 KB", "%1 MB", "%1 GB", "%1 TB"};

    double size = static_cast<double>(bytes);
    if (size < cUnitLimit)
        return QStringLiteral("%1 bytes").arg(size);
    for (const char* unit : cUnits) {
        size /= cUnitFactor;
        if (size < cUnitLimit)
            return QString::fromLatin1(unit).arg(size, 0, 'g', size < cThreeDigitLimit ? 3 : 4);
    }
    return QString::fromLatin1(*std::prev(std::end(cUnits))).arg(size, 0, 'f', 0);
}

QString FileHandler::longFileName(const QString& path)
{
    return toLongPath(path);
}

bool FileHandler::isUncPath(const QString& path)
{
    return isUncPathText(path);
}

QString FileHandler::ConvertPath(const QString& path)
{
    return fromLongPath(path);
}

bool FileHandler::splitOffSlashesFromPath(QString* path)
{
    const auto isSlash = [](QChar character) {
        return character == QLatin1Char('/') || character == QDir::separator();
    };
    int length = path->size();
    while (length > 0 && isSlash(path->at(length - 1)))
        --length;
    const bool isRoot = length == 0 || (length == 2 && path->at(1) == QLatin1Char(':'));
    if (isRoot && length < path->size())
        ++length;
    const bool isCut = length < path->size();
    path->truncate(length);
    return isCut;
}

bool FileHandler::checkSameVolume(const QString& one, const QString& other)
{
    return FileSystem::areOnSameVolume(ConvertPath(one), ConvertPath(other));
}

bool FileHandler::hasDiskInDrive(const QString& path)
{
    return FileSystem::hasMedium(ConvertPath(path));
}

bool FileHandler::setRWPermissions(const QString& path)
{
    return setOwnerRights(ConvertPath(path), "Failed to set permissions for the file or folder: ");
}

bool FileHandler::setOwnerRights(const QString& path, const char* message)
{
    const QString operation = QStringLiteral("FileHandler::setRWPermissions");
    FileSystem::Error error;
    const FileSystem::ItemKind kind = FileSystem::getItemKind(path, &error);
    if (kind == FileSystem::ItemKind::Link)
        return true;
    const bool isFolder = kind == FileSystem::ItemKind::Folder;
    QFile::Permissions added = QFile::ReadOwner | QFile::WriteOwner;
    if (isFolder)
        added |= QFile::ExeOwner;
    if (!error)
        error = FileSystem::addOwnerRights(path, added);
    if (error)
        LogFailure(operation, message, path, error);
    bool isDone = !error;
    if (isFolder) {
        const QStringList names = listEntries(path, &error);
        if (error)
            LogFailure(operation, "Can't read folder: ", path, error);
        isDone &= !error;
        for (const QString& name : names)
            isDone &= setOwnerRights(QDir(path).filePath(name), "Failed to set permissions for the file: ");
    }
    return isDone;
}

bool FileHandler::getExtensionFromLink(const QString& link, QString* extension)
{
    const QString path = ConvertPath(link);
    const QString target = FileSystem::readLinkTarget(path);
    extension->clear();
    if (target.isEmpty()) {
        LogError(QStringLiteral("FileHandler::getExtensionFromLink"),
                 QLatin1String("File does not exists: ") + path);
        return false;
    }
    *extension = QFileInfo(target).suffix();
    return true;
}

bool FileHandler::saveXmlNodeKeepingAttributesOrder(const QDomNode& node, const QString& path)
{
    const QString file = ConvertPath(path);
    const GResult written = XmlNodeWriter(file).write(node);
    if (!written.HasSucceeded())
        LogError(QStringLiteral("FileHandler::saveXmlNodeKeepingAttributesOrder"),
                 QStringLiteral("Can't create destination file: %1 (%2)").arg(file, written.GetReason()));
    return written.HasSucceeded();
}
}  // namespace Morvane
