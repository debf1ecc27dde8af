#include "plugin/shell/ModuleResidence.h"

#include "foundation/core/GString.h"
#include "foundation/trace/GTrace.h"

#include <windows.h>

void KeepModuleLoaded()
{
    static const wchar_t cAnchor = 0;
    HMODULE module = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN, &cAnchor,
                           &module) == 0)
        GTrace::Error(QStringLiteral("KeepModuleLoaded"),
                      QStringLiteral("The module can't be kept: error %1.").arg(GetLastError()));
}
