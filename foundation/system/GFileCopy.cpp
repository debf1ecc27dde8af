#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GOwnedFile.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GUniqueName.h"
#include "foundation/trace/GTrace.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <vector>

namespace
{
constexpr int cChunkSize = 256 * 1024;

[[noreturn]] void RaiseCopyError(const GPathName& source, const GString& reason)
{
    throw GCustomException(
        GErrorCode::cFile,
        QStringLiteral("The file \"%1\" can't be copied: %2").arg(source.GetNativePath(), reason));
}

// What copies to this destination that were killed have left.
void RemoveLeftovers(const GPathName& destination)
{
    static const QRegularExpression cSuffix(QStringLiteral("^\\.[0-9a-z]{8}\\.new$"));
    const GString leaf = destination.GetLeaf();
    const GPathName folder = destination.GetParent();
    for (const GString& name :
         QDir(folder.GetNativePath()).entryList({QStringLiteral("*.new")}, QDir::Files | QDir::Hidden)) {
        if (name.startsWith(leaf) && cSuffix.match(name.mid(leaf.size())).hasMatch())
            GOwnedFile::RemoveUnowned(folder.GetChild(name));
    }
}

GPathName GetFolder(const GPathName& file)
{
    const GPathName folder = file.GetParent();
    return folder.IsEmpty() ? GPathName(QStringLiteral(".")) : folder;
}

GPathName MakePassingName(const GPathName& destination)
{
    return destination.GetParent().GetChild(destination.GetLeaf() + QLatin1Char('.') + MakeRandomName(8) +
                                            QStringLiteral(".new"));
}

// The file under its passing name, which goes unless the copy is taken over.
class UnfinishedCopy
{
public:
    explicit UnfinishedCopy(const GPathName& destination)
        : mFile([&destination] { return MakePassingName(destination); })
    {
        RemoveLeftovers(destination);
    }

    void FillFrom(QFile& from, const GPathName& source, bool keepsTime)
    {
        QFile to(mFile.GetPathName().GetNativePath());
        if (!to.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            RaiseCopyError(source, to.errorString());
        std::vector<char> chunk(cChunkSize);
        qint64 count = 0;
        while ((count = from.read(chunk.data(), cChunkSize)) > 0) {
            if (!GFileCalls::WriteAll(to, chunk.data(), count))
                RaiseCopyError(source, to.errorString());
        }
        if (count < 0)
            RaiseCopyError(source, from.errorString());
        if (!GFileCalls::FlushFile(to))
            RaiseCopyError(source, GetReasonText(GetLastSystemError()));
        if (keepsTime)
            to.setFileTime(QFileInfo(source.GetNativePath()).lastModified(),
                           QFileDevice::FileModificationTime);
    }

    void MoveTo(const GPathName& destination, bool isReplacing)
    {
        if (!GFileCalls::RenameFile(mFile.GetPathName(), destination, isReplacing))
            RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), destination,
                           GetLastSystemError());
        mFile.Disown();
        // The copy is in place whatever comes of this; without it a power cut may take its name away.
        if (!GFileCalls::FlushFolder(GetFolder(destination)))
            GTrace::Error(QStringLiteral("GFileSystemBase::CopyAndRenameFile"),
                          QStringLiteral("The folder of \"%1\" can't be flushed: %2")
                              .arg(destination.GetNativePath(), GetReasonText(GetLastSystemError())));
    }

private:
    GOwnedFile mFile;
};
}  // namespace

void GFileSystemBase::CopyAndRenameFile(const GPathName& source, const GPathName& destination, uint32_t flags)
{
    QFile file(source.GetNativePath());
    GString reason;
    if (OpenSharedForReading(file, cNoLargestFile, reason) != FileOpening::cOpen)
        RaiseCopyError(source, reason);
    UnfinishedCopy copy(destination);
    copy.FillFrom(file, source, (flags & cKeepModificationTime) != 0);
    copy.MoveTo(destination, (flags & cReplaceExisting) != 0);
}
