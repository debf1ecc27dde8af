#include "apps/printer_processor/inbox/JobCopy.h"

#include "apps/printer_processor/inbox/InboxCalls.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"

#include <QFile>
#include <QFileInfo>
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

InboxCalls::State GetState(const GString& path, const QFile& file)
{
    InboxCalls::State state;
    if (!InboxCalls::GetState(file, &state))
        Fail(QStringLiteral("Can't look at"), path, GetLastReason());
    return state;
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
    GString source;
    GString relativePath;
    bool isFolder;
};

class Copier
{
public:
    explicit Copier(const std::atomic<bool>& isStopped) : mIsStopped(isStopped) {}

    void CopyFile(const GString& source, const GPathName& path) const;
    QStringList CopyFolder(const GString& source, const GPathName& path) const;

private:
    void CheckStop() const;
    std::vector<Item> ListItems(const GString& folder, QStringList* leftOut) const;
    void CopyContent(const GString& source, QFile& from, QFile& to) const;

    const std::atomic<bool>& mIsStopped;
};

void Copier::CheckStop() const
{
    if (mIsStopped)
        throw GSimpleException(GErrorCode::cFile, QStringLiteral("The copying was stopped."));
}

// Everything in a folder that is copied, each folder before what is in it; and what is not.
std::vector<Item> Copier::ListItems(const GString& folder, QStringList* leftOut) const
{
    std::vector<Item> items = {{folder, QString(), true}};
    qint64 bytes = 0;
    for (size_t at = 0; at < items.size(); ++at) {
        CheckStop();
        const Item parent = items[at];
        QStringList names;
        if (!parent.isFolder)
            continue;
        if (!InboxCalls::ListNames(GPathName(parent.source), &names))
            Fail(QStringLiteral("Can't list"), parent.source, GetLastReason());
        for (const QString& name : names) {
            const GString source = parent.source + QLatin1Char('/') + name;
            qint64 size = 0;
            const InboxCalls::Kind kind = InboxCalls::GetKind(GPathName(source), &size);
            if (kind == InboxCalls::Kind::Unknown)
                Fail(QStringLiteral("Can't look at"), source, GetLastReason());
            const QString path = parent.relativePath + QLatin1Char('/') + name;
            bytes += kind == InboxCalls::Kind::File ? size : 0;
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

void Copier::CopyContent(const GString& source, QFile& from, QFile& to) const
{
    const InboxCalls::State before = GetState(source, from);
    qint64 unflushed = 0;
    qint64 copied = 0;
    while (copied <= before.size) {
        CheckStop();
        const QByteArray chunk = from.read(cChunk);
        if (chunk.isEmpty())
            break;
        if (!GFileCalls::WriteAll(to, chunk.constData(), chunk.size()))
            Fail(QStringLiteral("Can't write"), to.fileName(), to.errorString());
        copied += chunk.size();
        unflushed += chunk.size();
        if (unflushed >= cFlushInterval && GFileCalls::FlushFile(to))
            unflushed = 0;
    }
    if (from.error() != QFile::NoError)
        Fail(QStringLiteral("Can't read"), source, from.errorString());
    if (GetState(source, from) != before || copied != before.size)
        Fail(QStringLiteral("Can't copy"), source, QStringLiteral("it was written to meanwhile"));
    if (!GFileCalls::FlushFile(to))
        Fail(QStringLiteral("Can't flush"), to.fileName(), GetLastReason());
}

void Copier::CopyFile(const GString& source, const GPathName& path) const
{
    QFile from(source);
    QFile to(path.GetNativePath());
    GString reason;
    const FileOpening opening = OpenSharedForReading(from, JobCopy::cMaximumBytes, reason);
    if (opening != FileOpening::cOpen)
        Fail(QStringLiteral("Can't read"), source, reason);
    if (!to.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        Fail(QStringLiteral("Can't make"), to.fileName(), to.errorString());
    CopyContent(source, from, to);
}

QStringList Copier::CopyFolder(const GString& source, const GPathName& path) const
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
        if (item.isFolder && !GFileCalls::FlushFolder(copy))
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
    const GString found = QFileInfo(path.GetNativePath()).canonicalFilePath();
    if (found.isEmpty())
        Fail(QStringLiteral("Can't look at"), path.GetNativePath(), GetLastReason());
    const GPathName job(found);
    qint64 size = 0;
    const InboxCalls::Kind kind = InboxCalls::GetKind(job, &size);
    if (kind == InboxCalls::Kind::Unknown)
        Fail(QStringLiteral("Can't look at"), found, GetLastReason());
    if (kind == InboxCalls::Kind::Other)
        throw RefusedJob(QStringLiteral("The job is neither a file nor a folder."));
    const bool isFolder = kind == InboxCalls::Kind::Folder;
    if (!isFolder && size > cMaximumBytes)
        throw RefusedJob(QStringLiteral("The job is too large."));
    if (isFolder && (job == inbox || inbox.IsBelow(job)))
        throw RefusedJob(QStringLiteral("The inbox lies in the job."));
    return {found, path.GetLeaf(), isFolder};
}

QStringList JobCopy::Copy(const Source& source, const GPathName& target, const std::atomic<bool>& isStopped)
{
    const Copier copier(isStopped);
    if (source.isFolder)
        return copier.CopyFolder(source.path, target);
    copier.CopyFile(source.path, target);
    return {};
}
