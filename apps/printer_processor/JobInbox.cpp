#include "apps/printer_processor/JobInbox.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxFolder.h"

#include <QDir>
#include <QUrl>

namespace
{
constexpr qint64 cChunk = 256 * 1024;

[[noreturn]] void Refuse(const GString& text)
{
    throw GCustomException(GErrorCode::cFile, text);
}

GString GetPathOfURL(const GString& location)
{
    const QUrl url = QUrl::fromEncoded(location.toUtf8(), QUrl::StrictMode);
    if (!url.isValid() || !url.isLocalFile() || !url.host().isEmpty())
        Refuse(QStringLiteral("The job is no file or folder of this machine."));
    return url.toLocalFile();
}

GPathName GetPath(const GString& location)
{
    const bool isURL = location.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    const GPathName path(isURL ? GetPathOfURL(location) : location);
    if (!path.IsAbsolute() || path.IsRoot())
        Refuse(QStringLiteral("The path of the job is none of a file or folder."));
    return path;
}

// A file or folder of a job, and where it goes below the job's copy.
struct Item
{
    QFileInfo source;
    GString relativePath;
};

// Everything in a folder that is copied, each folder before what is in it.
std::vector<Item> ListItems(const QFileInfo& folder)
{
    std::vector<Item> items = {{folder, QString()}};
    qint64 bytes = 0;
    for (size_t at = 0; at < items.size(); ++at) {
        if (!items[at].source.isDir())
            continue;
        const Item parent = items[at];
        const QDir::Filters filters = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QFileInfo& source :
             QDir(parent.source.filePath()).entryInfoList(filters, QDir::Unsorted)) {
            if (source.isSymLink() || !(source.isDir() || source.isFile()))
                continue;
            bytes += source.isFile() ? source.size() : 0;
            items.push_back({source, parent.relativePath + QLatin1Char('/') + source.fileName()});
            if (items.size() > JobInbox::cMaximumItems || bytes > JobInbox::cMaximumBytes)
                Refuse(QStringLiteral("The job is too large."));
        }
    }
    return items;
}

// Copies as much of a file as it says to hold, to a file that is there.
void CopyContent(const QFileInfo& source, QFile& target)
{
    QFile file(source.filePath());
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        Refuse(file.errorString());
    for (qint64 rest = source.size(); rest > 0;) {
        const QByteArray chunk = file.read(qMin(rest, cChunk));
        if (chunk.isEmpty())
            break;
        if (target.write(chunk) != chunk.size())
            Refuse(target.errorString());
        rest -= chunk.size();
    }
    if (file.error() != QFile::NoError)
        Refuse(file.errorString());
    if (!target.flush())
        Refuse(target.errorString());
}

void CopyToNewFile(const QFileInfo& source, const GPathName& path)
{
    QFile target(path.GetNativePath());
    if (!target.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        Refuse(target.errorString());
    CopyContent(source, target);
}

void CopyItem(const Item& item, const GPathName& copy)
{
    const GPathName path = copy.GetChild(item.relativePath.mid(1));
    if (item.source.isDir())
        GFileSystemBase::CreateFolder(path);
    else
        CopyToNewFile(item.source, path);
}
}  // namespace

JobInbox::JobInbox(const GPathName& folder)
{
    GFileSystemBase::CreateFolder(folder);
    mFolder = GPathName(QFileInfo(folder.GetNativePath()).canonicalFilePath());
    if (!QFileInfo(mFolder.GetNativePath()).isDir())
        Refuse(QStringLiteral("The inbox \"%1\" is no folder.").arg(folder.GetNativePath()));
}

GPathName JobInbox::Take(const GString& location) const
{
    const GPathName path = GetPath(location);
    const QFileInfo source(QFileInfo(path.GetNativePath()).canonicalFilePath());
    if (source.isFile())
        return TakeFile(source, path.GetLeaf());
    if (source.isDir())
        return TakeFolder(source, path.GetLeaf());
    Refuse(QStringLiteral("There is no such file or folder."));
}

GPathName JobInbox::TakeFile(const QFileInfo& source, const GString& name) const
{
    if (source.size() > cMaximumBytes)
        Refuse(QStringLiteral("The job is too large."));
    const GPathName copy = GFileSystemBase::CreateUniqueFile(mFolder, name);
    try {
        CopyToNewFile(source, copy);
    } catch (const GException&) {
        GFileSystemBase::TryToRemoveFile(copy);
        throw;
    }
    return copy;
}

GPathName JobInbox::TakeFolder(const QFileInfo& source, const GString& name) const
{
    const GPathName folder(source.filePath());
    if (folder == mFolder || mFolder.IsBelow(folder))
        Refuse(QStringLiteral("The inbox lies in the job."));
    const std::vector<Item> items = ListItems(source);
    const GPathName copy = HopboxFolder::MakeFresh(mFolder, name);
    try {
        for (size_t at = 1; at < items.size(); ++at)
            CopyItem(items[at], copy);
    } catch (const GException&) {
        GFileSystemBase::TryToRemoveFolder(copy);
        throw;
    }
    return copy;
}
