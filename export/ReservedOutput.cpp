#include "export/ReservedOutput.h"

#include "foundation/files/FileSystem.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemFolders.h"

namespace
{
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
