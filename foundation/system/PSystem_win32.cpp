#include "foundation/system/PSystem.h"

#include <windows.h>

#include <lmcons.h>

GString PSystem::GetLogonName()
{
    wchar_t name[UNLEN + 1] = {};
    DWORD size = UNLEN + 1;
    if (GetUserNameW(name, &size) && name[0] != L'\0')
        return QString::fromWCharArray(name);
    return QStringLiteral("user");
}
