#include "export/FolderOwner.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

bool IsOwnFolder(const GPathName& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path.GetSystemPath()).constData(), &status) == 0 &&
           S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}
