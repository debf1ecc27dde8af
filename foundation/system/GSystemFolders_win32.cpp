#include "foundation/system/GSystemFolders.h"

#include "foundation/system/GSystemError.h"
#include "foundation/system/POwnerSecurity.h"

#include <shlobj.h>

#include <vector>

namespace
{
GPathName GetShellFolder(int folder)
{
    wchar_t path[MAX_PATH] = {};
    const HRESULT result = SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path);
    if (FAILED(result)) {
        SetLastError(HRESULT_CODE(result));
        RaiseFileError(QStringLiteral("The application data folder can't be found (%1)"), GPathName(),
                       GetLastSystemError());
    }
    return GPathName(QString::fromWCharArray(path));
}
}  // namespace

GString GSystemFolders::GetEnvironmentText(const char* name)
{
    const GString wideName = QString::fromLatin1(name);
    const auto* nameText = reinterpret_cast<const wchar_t*>(wideName.utf16());
    std::vector<wchar_t> text(GetEnvironmentVariableW(nameText, nullptr, 0) + 1);
    const DWORD length = GetEnvironmentVariableW(nameText, text.data(), static_cast<DWORD>(text.size()));
    return length < text.size() ? QString::fromWCharArray(text.data(), static_cast<int>(length)) : GString();
}

GPathName GSystemFolders::GetApplicationData()
{
    return GetShellFolder(CSIDL_APPDATA | CSIDL_FLAG_CREATE);
}

GPathName GSystemFolders::GetCommonApplicationData()
{
    return GetShellFolder(CSIDL_COMMON_APPDATA);
}

GPathName GSystemFolders::GetModuleFile()
{
    static const char cAnchor = 0;
    HMODULE module = nullptr;
    constexpr DWORD cFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(cFlags, reinterpret_cast<const wchar_t*>(&cAnchor), &module))
        RaiseFileError(QStringLiteral("The module's file can't be found (%1)"), GPathName(),
                       GetLastSystemError());
    std::vector<wchar_t> path(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0)
            RaiseFileError(QStringLiteral("The module's file can't be found (%1)"), GPathName(),
                           GetLastSystemError());
        if (length < path.size())
            return GPathName(QString::fromWCharArray(path.data(), static_cast<int>(length)));
        path.resize(path.size() * 2);
    }
}

bool GSystemFolders::MakeFolder(const GPathName& path) noexcept
{
    POwnerSecurity security(L"OICI");
    const GString systemPath = path.GetSystemPath();
    return CreateDirectoryW(reinterpret_cast<const wchar_t*>(systemPath.utf16()), security.Get()) != 0;
}
