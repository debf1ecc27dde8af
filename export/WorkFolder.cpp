#include "export/WorkFolder.h"

#include "export/FolderOwner.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/files/FileSystem.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemFolders.h"
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

bool IsTaken(const GPathName& path)
{
    return Morvane::FileSystem::getItemKind(path.GetPortablePath()) != Morvane::FileSystem::ItemKind::None;
}

// Makes it empty; false when it was there, or can't be made.
bool Make(const GPathName& path, ReservedOutput::Kind kind)
{
    return kind == ReservedOutput::Kind::File ? GFileCalls::CreateNewFile(path).IsOpen()
                                              : GSystemFolders::MakeFolder(path);
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

ReservedOutput::ReservedOutput(const GPathName& workFolder, const GString& name, Kind kind)
    : mPath(workFolder.GetChild(name))
{
    if (!IsTaken(mPath)) {
        mOwned.Reassign(mPath);
        if (Make(mPath, kind))
            return;
        mOwned.Keep();  // somebody was quicker, or it can't be made there at all, as the next step will tell
    }
    mOwned = GCPTSmartPathName::MakeFolder(workFolder, QStringLiteral("XXXXX"));
    mPath = mOwned.GetPathName().GetChild(name);
    if (kind == Kind::Folder)
        GFileSystemBase::CreateFolder(mPath);
}
