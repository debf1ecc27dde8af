#include "hopbox/StartShortcut.h"

#include "foundation/system/PCom.h"

#include <windows.h>

#include <shlobj.h>

namespace
{
const wchar_t* GetWide(const GString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

// The full path of the command interpreter; empty when there is none.
GString FindCommandInterpreter()
{
    wchar_t systemFolder[MAX_PATH];
    const UINT folderLength = GetSystemDirectoryW(systemFolder, MAX_PATH);
    if (folderLength == 0 || folderLength >= MAX_PATH)
        return {};
    wchar_t path[MAX_PATH];
    const DWORD length = SearchPathW(systemFolder, L"cmd", L".exe", MAX_PATH, path, nullptr);
    if (length == 0 || length >= MAX_PATH)
        return {};
    return GString::fromWCharArray(path, static_cast<int>(length));
}

bool Describe(IShellLinkW& link, const GString& interpreter, const GString& applicationName,
              const GString& folder)
{
    const GString image = applicationName + QLatin1String(".exe");
    const GString arguments = QLatin1String("/C cd ") + folder + QLatin1String(" && start ") + image;
    const GString icon = folder + QLatin1Char('\\') + image;
    return SUCCEEDED(link.SetPath(GetWide(interpreter))) &&
           SUCCEEDED(link.SetArguments(GetWide(arguments))) &&
           SUCCEEDED(link.SetDescription(GetWide(applicationName))) &&
           SUCCEEDED(link.SetIconLocation(GetWide(icon), 0)) &&
           SUCCEEDED(link.SetShowCmd(SW_SHOWMINNOACTIVE)) &&
           SUCCEEDED(link.SetWorkingDirectory(GetWide(folder)));
}
}  // namespace

bool MakeStartShortcut(const GString& applicationName, const GPathName& folder,
                       const GPathName& shortcutPath) noexcept
{
    const GString interpreter = FindCommandInterpreter();
    if (interpreter.isEmpty())
        return false;
    const PComApartment apartment;
    if (!apartment.IsUp())
        return false;
    PComReference<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.GetAddress())))
        return false;
    if (!Describe(*link.Get(), interpreter, applicationName, folder.GetNativePath()))
        return false;
    PComReference<IPersistFile> file;
    return SUCCEEDED(link->QueryInterface(IID_IPersistFile, file.GetAddress())) &&
           SUCCEEDED(file->Save(GetWide(shortcutPath.GetNativePath()), TRUE));
}
