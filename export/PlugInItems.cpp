#include "export/PlugInItems.h"

#include "foundation/files/FileSystem.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"

GPathName PlugInItems::GetSettingsFile(const GPrefModule& module)
{
    const auto* file = dynamic_cast<const GPrefFileModule*>(&module);
    return file != nullptr ? file->GetPathName() : GPathName();
}

bool PlugInItems::ChangeSettings(const char* operation, const std::function<void(GPrefModule&)>& change)
{
    try {
        GPrefModule* module = GPreferences::GetPrefModule(GPreferences::cUserFileModule);
        if (module == nullptr) {
            GTrace::Error(QString::fromLatin1(operation), QStringLiteral("there are no plug-in settings"));
            return false;
        }
        if (auto* file = dynamic_cast<GPrefSharedFileModule*>(module)) {
            file->ChangeUnderLock(change);
        } else {
            change(*module);
            module->FlushPrefs();
        }
        return true;
    } catch (const std::exception& error) {
        GTrace::Error(QString::fromLatin1(operation), QString::fromUtf8(error.what()));
        return false;
    }
}

bool PlugInItems::IsInTemporaryFolder(const GPathName& path)
{
    const GPathName temporary = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary);
    if (!path.IsBelow(temporary))
        return false;
    using Morvane::FileSystem::ItemKind;
    for (GPathName folder = path.GetParent(); folder != temporary; folder = folder.GetParent()) {
        const ItemKind kind = Morvane::FileSystem::getItemKind(folder.GetPortablePath());
        if (kind != ItemKind::Folder && kind != ItemKind::None)
            return false;
    }
    return true;
}
