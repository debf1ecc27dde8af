#include "plugin/shell/ModuleResidence.h"

#include "foundation/core/GString.h"
#include "foundation/trace/GTrace.h"

#include <dlfcn.h>

void KeepModuleLoaded()
{
    static const char cAnchor = 0;
    Dl_info information = {};
    const bool isFound = dladdr(&cAnchor, &information) != 0;
    // The handle is dropped: the flag stays with the module. A program's own code needs none.
    if (!isFound || dlopen(information.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE) == nullptr)
        GTrace::Debug(QStringLiteral("KeepModuleLoaded"), QStringLiteral("The code is in no module."));
}
