#include "apps/printer_processor/inbox/JobCopy.h"

#include "apps/printer_processor/inbox/InboxCalls.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"

#include <QFile>
#include <QUrl>

#include <vector>

namespace
{
constexpr qint64 cChunk = 256 * 1024;

// The system writes this much within the time in which a stop has to be heeded.
constexpr qint64 cFlushInterval = 16 * 1024 * 1024;

[[noreturn]] void Fail(const GString& what, const GString& path, const GString& reason)
{
    throw GCustomException(GErrorCode::cFile, QStringLiteral("%1 \"%2\": %3").arg(what, path, reason));
}

GString GetLastReason()
{
    return GetReasonText(GetLastSystemError());
}

GString GetPathOfURL(const GString& location)
{
    const QUrl url = QUrl::fromEncoded(location.toUtf8(), QUrl::StrictMode);
    if (!url.isValid() || !url.isLocalFile() || !url.host().isEmpty())
        throw RefusedJob(QStringLiteral("The job is no file or folder of this machine."));
    return url.toLocalFile();
}

GPathName GetPath(const GString& location)
{
    const bool isURL = location.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
    GPathName path;
    try {
        path = GPathName(isURL ? GetPathOfURL(location) : location);
    } catch (const GException& error) {
        throw RefusedJob(error.GetDescription());
    }
    if (!path.IsAbsolute() || path.IsRoot())
        throw RefusedJob(QStringLiteral("The path of the job is none of a file or folder."));
    return path;
}

// A file or folder of a job, and where it goes below the job's copy.
struct Item
{
    QFileInfo source;
    GString relativePath;
    bool isFolder;
};

class Copier
{
public:
    explicit Copier(const std::atomic<bool>& isStopped) : mIsStopped(isStopped) {}

    void CopyFile(const QFileInfo& source, const GPathName& path) const;
    QStringList CopyFolder(const QFileInfo& source, const GPathName& path) const;

private:
    void CheckStop() const;
    std::vector<Item> ListItems(const QFileInfo& folder, QStringList* leftOut) const;
    void CopyContent(QFile& from, QFile& to) const;

    const std::atomic<bool>& mIsStopped;
};

void Copier::CheckStop() const
{
    if (mIsStopped)
        throw GSimpleException(GErrorCode::cFile, QStringLiteral("The copying was stopped."));
}

// Everything in a folder that is copied, each folder before what is in it; and what is not.
std::vector<Item> Copier::ListItems(const QFileInfo& folder, QStringList* leftOut) const
{
    std::vector<Item> items = {{folder, QString(), true}};
    qint64 bytes = 0;
    for (size_t at = 0; at < items.size(); ++at) {
        CheckStop();
        const Item parent = items[at];
        QStringList names;
        if (!parent.isFolder)
            continue;
        if (!InboxCalls::ListNames(GPathName(parent.source.filePath()), &names))
            Fail(QStringLiteral("Can't list"), parent.source.filePath(), GetLastReason());
        for (const QString& name : names) {
            const QFileInfo source(parent.source.filePath() + QLatin1Char('/') + name);
            const InboxCalls::Kind kind = InboxCalls::GetKind(GPathName(source.filePath()));
            if (kind == InboxCalls::Kind::Unknown)
                Fail(QStringLiteral("Can't look at"), source.filePath(), GetLastReason());
            const QString path = parent.relativePath + QLatin1Char('/') + name;
            bytes += kind == InboxCalls::Kind::File ? source.size() : 0;
            if (kind == InboxCalls::Kind::Other)
                leftOut->append(path.mid(1));
            else
                items.push_back({source, path, kind == InboxCalls::Kind::Folder});
            if (items.size() + static_cast<size_t>(leftOut->size()) > JobCopy::cMaximumItems ||
                bytes > JobCopy::cMaximumBytes)
                throw RefusedJob(QStringLiteral("The job is too large."));
        }
    }
    return items;
}

void Copier::CopyContent(QFile& from, QFile& to) const
{
    qint64 unflushed = 0;
    for (qint64 rest = from.size(); rest > 0;) {
        CheckStop();
        const QByteArray chunk = from.read(qMin(rest, cChunk));
        if (chunk.isEmpty())
            break;
        if (!GFileCalls::WriteAll(to, chunk.constData(), chunk.size()))
            Fail(QStringLiteral("Can't write"), to.fileName(), to.errorString());
        rest -= chunk.size();
        unflushed += chunk.size();
        if (unflushed >= cFlushInterval && GFileCalls::FlushFile(to))
            unflushed = 0;
    }
    if (from.error() != QFile::NoError)
        Fail(QStringLiteral("Can't read"), from.fileName(), from.errorString());
    if (!GFileCalls::FlushFile(to))
        Fail(QStringLiteral("Can't flush"), to.fileName(), GetLastReason());
}

void Copier::CopyFile(const QFileInfo& source, const GPathName& path) const
{
    QFile from(source.filePath());
    QFile to(path.GetNativePath());
    GString reason;
    const FileOpening opening = OpenSharedForReading(from, JobCopy::cMaximumBytes, reason);
    if (opening != FileOpening::cOpen)
        Fail(QStringLiteral("Can't read"), source.filePath(), reason);
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        Fail(QStringLiteral("Can't make"), to.fileName(), to.errorString());
    CopyContent(from, to);
}

QStringList Copier::CopyFolder(const QFileInfo& source, const GPathName& path) const
{
    QStringList leftOut;
    const std::vector<Item> items = ListItems(source, &leftOut);
    for (const Item& item : items) {
        const GPathName copy = item.relativePath.isEmpty() ? path : path.GetChild(item.relativePath.mid(1));
        if (!item.isFolder)
            CopyFile(item.source, copy);
        else if (!InboxCalls::MakeFolder(copy))
            Fail(QStringLiteral("Can't make"), copy.GetNativePath(), GetLastReason());
    }
    for (const Item& item : items) {
        const GPathName copy = item.relativePath.isEmpty() ? path : path.GetChild(item.relativePath.mid(1));
        CheckStop();
        if (item.isFolder && !InboxCalls::FlushFolder(copy))
            Fail(QStringLiteral("Can't flush"), copy.GetNativePath(), GetLastReason());
    }
    return leftOut;
}
}  // namespace

RefusedJob::RefusedJob(const GString& text) : GCustomException(GErrorCode::cFile, text) {}

JobCopy::Source JobCopy::Find(const GString& location, const GPathName& inbox)
{
    const GPathName path = GetPath(location);
    const InboxCalls::Look look = InboxCalls::LookAt(path);
    if (look == InboxCalls::Look::Nothing)
        throw RefusedJob(QStringLiteral("There is no such file or folder."));
    if (look == InboxCalls::Look::Unknown)
        Fail(QStringLiteral("Can't look at"), path.GetNativePath(), GetLastReason());
    const QFileInfo file(QFileInfo(path.GetNativePath()).canonicalFilePath());
    if (file.filePath().isEmpty())
        Fail(QStringLiteral("Can't look at"), path.GetNativePath(), GetLastReason());
    if (!file.isFile() && !file.isDir())
        throw RefusedJob(QStringLiteral("The job is neither a file nor a folder."));
    if (file.isFile() && file.size() > cMaximumBytes)
        throw RefusedJob(QStringLiteral("The job is too large."));
    const GPathName folder(file.filePath());
    if (file.isDir() && (folder == inbox || inbox.IsBelow(folder)))
        throw RefusedJob(QStringLiteral("The inbox lies in the job."));
    return {file, path.GetLeaf()};
}

QStringList JobCopy::Copy(const Source& source, const GPathName& target, const std::atomic<bool>& isStopped)
{
    const Copier copier(isStopped);
    if (source.file.isDir())
        return copier.CopyFolder(source.file, target);
    copier.CopyFile(source.file, target);
    return {};
}
