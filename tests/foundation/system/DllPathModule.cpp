#include "foundation/system/GFileSystemBase.h"

extern "C" Q_DECL_EXPORT void GetDllPathOfModule(QString* path)
{
    *path = GFileSystemBase::GetDllPath().GetPortablePath();
}
