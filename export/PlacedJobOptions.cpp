#include "export/PlacedJobOptions.h"

#include "export/JobOptionsFolder.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "plugin/messages/ErrorText.h"

#include <QFile>

namespace
{
void MakeReadOnly(const GPathName& path)
{
    QFile file(path.GetNativePath());
    if (!file.setPermissions(QFile::ReadOwner | QFile::ReadUser)) {
        throw GCustomException(GErrorCode::cFile,
                               QStringLiteral("The file \"%1\" can't be made read-only: %2")
                                   .arg(path.GetNativePath(), file.errorString()));
    }
}

void CopyReadOnly(const GPathName& source, const GPathName& destination)
{
    GFileSystemBase::CopyAndRenameFile(
        source, destination, GFileSystemBase::cReplaceExisting | GFileSystemBase::cKeepModificationTime);
    MakeReadOnly(destination);
}
}  // namespace

PlacedJobOptions::PlacedJobOptions(const GPathName& jobOptions)
{
    try {
        GFileSystemBase::CreateFolder(JobOptionsFolder::GetPath());
        mFile = GCPTSmartPathName::MakeFile(JobOptionsFolder::GetPath(), JobOptionsFolder::cPlacedName);
        CopyReadOnly(jobOptions, mFile.GetPathName());
    } catch (const GException& error) {
        mFile.Dispose();
        mError = ErrorText::Describe(error);
    }
}

GString PlacedJobOptions::GetSettingsName() const
{
    const GString name = mFile.GetPathName().GetLeafWithoutExtension();
    // The mark of the file itself counts: an administrator may write any file.
    const bool isWritable = QFile(mFile.GetPathName().GetNativePath()).permissions() & QFile::WriteOwner;
    return isWritable ? name : QStringLiteral("[%1]").arg(name);
}
