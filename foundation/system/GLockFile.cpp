#include "foundation/system/GLockFile.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

GLockFile::GLockFile(const GPathName& path) : mPath(path) {}

GLockFile::~GLockFile()
{
    Unlock();
}

void RaiseLockError(const GPathName& path, const GString& reason)
{
    throw GCustomException(
        GErrorCode::cLockFile,
        QStringLiteral("The lock file \"%1\" can't be opened: %2").arg(path.GetNativePath(), reason));
}

void RaiseNoLockFolder(const GPathName& path)
{
    throw GSimpleException(
        GErrorCode::cLockFile,
        QStringLiteral("The folder of the lock file \"%1\" is missing.").arg(path.GetNativePath()));
}
