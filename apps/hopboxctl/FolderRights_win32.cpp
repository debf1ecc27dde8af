#include "apps/hopboxctl/FolderRights.h"

bool FolderRights::MayOthersWrite(const QString&)
{
    return false;
}

bool FolderRights::MayAnybodyWrite(const QString&)
{
    return false;
}

bool FolderRights::CloseToOthers(const QString&)
{
    return false;
}
