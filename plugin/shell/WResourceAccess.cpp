#include "plugin/shell/WResourceAccess.h"

#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"

bool WResourceAccess::GetResourceFile(ResourceFileInfo& info) const
{
    try {
        const GPathName folder = GFileSystemBase::GetDllPath().GetParent();
        info = {IDFile(folder.GetChild(QStringLiteral("Resources"))),
                PMString::Untranslated(QStringLiteral("Export to Hopbox"))};
        return true;
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("WResourceAccess::GetResourceFile"), error.GetDescription());
        return false;
    }
}
