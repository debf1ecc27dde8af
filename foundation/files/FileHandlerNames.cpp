#include "foundation/core/GException.h"
#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSpecialPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QTime>

#include <random>
#include <thread>

namespace Morvane
{
namespace
{
const QLatin1String cHiddenMark(".~#~");
constexpr int cHiddenNameLength = 5;
constexpr uint32_t cUniqueSuffixes = 0x100000;  // five hexadecimal digits
constexpr int cLastVersion = 9999;
constexpr int cFolderAttempts = 100;

// Whether something is known to bear the name; what can't be looked at is not.
bool isTaken(const QString& path)
{
    FileSystem::Error error;
    return FileSystem::getItemKind(path, &error) != FileSystem::ItemKind::None && !error;
}

bool isTaken(const QString& folder, const QString& name)
{
    return isTaken(QDir(folder).filePath(name));
}

// The base of the hidden name of an item: the end of its own name with any earlier mark taken out.
QString getHiddenBase(const QString& name, QLatin1String purpose)
{
    QString plain = name;
    plain.remove(cHiddenMark);
    return cHiddenMark + plain.right(cHiddenNameLength) + purpose;
}

std::mt19937 makeGenerator()
{
    const auto time = static_cast<uint32_t>(QTime::currentTime().msecsSinceStartOfDay());
    const auto thread = static_cast<uint32_t>(std::hash<std::thread::id>()(std::this_thread::get_id()));
    return std::mt19937(time ^ thread);
}

// Name and suffix apart, so that a unique mark can stand between them: "a.tar.gz" is "a.tar" and ".gz".
struct SplitName
{
    explicit SplitName(const QString& name)
    {
        const int dot = name.lastIndexOf(QLatin1Char('.'));
        base = dot > 0 ? name.left(dot) : name;
        extension = dot > 0 ? name.mid(dot) : QString();
    }
    QString base;
    QString extension;
};
}  // namespace

// Empty, with an error line, when there is none.
QString FileHandler::getTemporaryFolder() const
{
    try {
        return GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetPortablePath();
    } catch (const GException& error) {
        LogError(QStringLiteral("FileHandler::createTempItem"), error.GetDescription());
        return {};
    }
}

QString FileHandler::createUniqueName(const QString& base, const QString& folder)
{
    std::mt19937 generator = makeGenerator();
    QString name;
    do {
        name = base + QStringLiteral("_%1").arg(generator() % cUniqueSuffixes, 5, 16, QLatin1Char('0'));
    } while (isTaken(folder, name));
    return name;
}

QString FileHandler::createNameForDelete(const QString& path)
{
    const std::lock_guard<std::mutex> guard(mDeleteNameMutex);
    const QFileInfo item(ConvertPath(path));
    const QString base = getHiddenBase(item.fileName(), QLatin1String("_del_"));
    return QDir(item.absolutePath()).filePath(createUniqueName(base, item.absolutePath()));
}

// Where a copy grows until it is whole, beside its destination.
QString FileHandler::getHiddenPath(const QString& path)
{
    const QFileInfo item(path);
    const QString base = getHiddenBase(item.fileName(), QLatin1String("_new_"));
    return QDir(item.absolutePath()).filePath(createUniqueName(base, item.absolutePath()));
}

QString FileHandler::createTempItem(const QString& name, const QString& folder, bool makeFolder)
{
    const QString place = folder.isEmpty() ? getTemporaryFolder() : ConvertPath(folder);
    if (place.isEmpty())
        return {};
    const std::lock_guard<std::mutex> guard(mTempItemMutex);
    // Another process may take the name between the look and the making: then it is the next one.
    FileSystem::Error error;
    for (int attempt = 0; attempt < cFolderAttempts; ++attempt) {
        const QString path = QFileInfo(QDir(place), createUniqueName(name, place)).absoluteFilePath();
        if (makeFolder)
            error = FileSystem::makeFolder(path);
        if (!error)
            return path;
        if (!isTaken(path))
            break;
    }
    LogFailure(QStringLiteral("FileHandler::createTempItem"), "Can't create directory: ", place, error);
    return {};
}

QString FileHandler::createTempFolderForFile(const QString& file)
{
    return createTempItem(SplitName(QFileInfo(ConvertPath(file)).fileName()).base, QString(), true);
}

QString FileHandler::getTempFilePath(const QString& fileName)
{
    const SplitName name(QFileInfo(fileName).fileName());
    QString path;
    do {
        const QString base = createTempItem(name.base, QString(), false);
        path = base.isEmpty() ? QString() : base + name.extension;
    } while (!path.isEmpty() && isTaken(path));
    return path;
}

bool FileHandler::getVersionName(const QString& path, QString* versionPath)
{
    const QFileInfo item(ConvertPath(path));
    const SplitName name(item.fileName());
    QString candidate = item.fileName();
    for (int version = 2; isTaken(item.path(), candidate); ++version) {
        if (version > cLastVersion) {
            *versionPath = path;
            LogError(QStringLiteral("FileHandler::getVersionName"),
                     QLatin1String("Can't create destination file: ") + item.filePath());
            return false;
        }
        candidate = name.base + QLatin1Char('_') + QString::number(version) + name.extension;
    }
    *versionPath = QDir(item.path()).filePath(candidate);
    return true;
}

bool FileHandler::UpdateFileDestination(const QString& source, QString* destination)
{
    QString wanted = ConvertPath(*destination);
    if (QFileInfo(wanted).isDir())
        wanted = QDir(wanted).filePath(QFileInfo(ConvertPath(source)).fileName());
    return getVersionName(wanted, destination);
}

bool FileHandler::UpdateFolderDestination(const QString& source, QString* destination)
{
    const QString name = QFileInfo(ConvertPath(source)).fileName();
    return getVersionName(QDir(ConvertPath(*destination)).filePath(name), destination);
}
}  // namespace Morvane
