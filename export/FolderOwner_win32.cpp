#include "export/FolderOwner.h"

#include "foundation/files/FileSystem.h"

bool IsOwnFolder(const GPathName& path)
{
    using namespace Morvane::FileSystem;
    return getItemKind(path.GetPortablePath()) == ItemKind::Folder;
}
