#include "export/WorkFolder.h"

#include "export/FolderOwner.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/PSystem.h"
#include "hopbox/HopboxFolder.h"

namespace
{
void MakeOwn(const GPathName& folder)
{
    GFileSystemBase::CreateFolder(folder);
    if (!IsOwnFolder(folder)) {
        throw GCustomException(GErrorCode::cFile,
                               QStringLiteral("The folder \"%1\" is a link or belongs to somebody else.")
                                   .arg(folder.GetNativePath()));
    }
}
}  // namespace

GPathName WorkFolder::GetPath(const GString& hopboxName)
{
    return GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary)
        .GetChild(HopboxFolder::MakeName(PSystem::GetLogonName()))
        .GetChild(HopboxFolder::MakeName(hopboxName));
}

void WorkFolder::Make(const GPathName& workFolder)
{
    MakeOwn(workFolder.GetParent());
    MakeOwn(workFolder);
}
