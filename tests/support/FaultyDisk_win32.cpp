#include "tests/support/FaultyDisk.h"

bool MountSmallDisk(const QString&, int)
{
    return false;
}

bool MountDiskThatClaimsNothing(const QString&)
{
    return false;
}

bool LimitFileSize(int)
{
    return false;
}
