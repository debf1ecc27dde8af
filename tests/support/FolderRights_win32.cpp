#include "tests/support/FolderRights.h"

#include <QDir>

#include <windows.h>

#include <sddl.h>

bool SetFolderRights(const QString& path, const wchar_t* rights)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor, nullptr))
        return false;
    const bool isSet = SetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, descriptor) != 0;
    LocalFree(descriptor);
    return isSet;
}
