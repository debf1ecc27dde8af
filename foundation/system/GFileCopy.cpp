#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

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

// The file under its passing name, which goes unless the copy is taken over.
class UnfinishedCopy
{
public:
    explicit UnfinishedCopy(const GPathName& destination)
        : mPath(GFileSystemBase::CreateUniqueFile(destination.GetParent(),
                                                  destination.GetLeaf() + QStringLiteral(".new")))
    {
    }
    ~UnfinishedCopy()
    {
        if (!mPath.IsEmpty())
            GFileSystemBase::TryToRemoveFile(mPath);
    }
    UnfinishedCopy(const UnfinishedCopy&) = delete;
    UnfinishedCopy& operator=(const UnfinishedCopy&) = delete;

    void FillFrom(const GPathName& source, bool keepsTime)
    {
        QFile from(source.GetNativePath());
        QFile to(mPath.GetNativePath());
        if (!from.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            RaiseCopyError(source, from.errorString());
        if (!to.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            RaiseCopyError(source, to.errorString());
        std::vector<char> chunk(cChunkSize);
        qint64 count = 0;
        while ((count = from.read(chunk.data(), cChunkSize)) > 0) {
            if (to.write(chunk.data(), count) != count)
                RaiseCopyError(source, to.errorString());
        }
        if (count < 0)
            RaiseCopyError(source, from.errorString());
        if (keepsTime)
            to.setFileTime(QFileInfo(from).lastModified(), QFileDevice::FileModificationTime);
    }

    void MoveTo(const GPathName& destination, bool isReplacing)
    {
        if (!GFileCalls::RenameFile(mPath, destination, isReplacing))
            RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), destination,
                           GetLastSystemError());
        mPath = GPathName();
    }

private:
    GPathName mPath;
};
}  // namespace

void GFileSystemBase::CopyAndRenameFile(const GPathName& source, const GPathName& destination, uint32_t flags)
{
    if (!QFileInfo(source.GetNativePath()).isFile())
        RaiseCopyError(source, QStringLiteral("there is no such file"));
    UnfinishedCopy copy(destination);
    copy.FillFrom(source, (flags & cKeepModificationTime) != 0);
    copy.MoveTo(destination, (flags & cReplaceExisting) != 0);
}
