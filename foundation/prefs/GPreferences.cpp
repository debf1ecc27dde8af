#include "foundation/prefs/GPreferences.h"

#include "foundation/core/GException.h"
#include "foundation/prefs/GFolderSubstitution.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/prefs/PrefModuleTable.h"
#include "foundation/prefs/PrefSharing.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"

#include <set>

namespace
{
PrefModuleTable sModules;
GEncodingRef sEncoding;
std::vector<std::unique_ptr<GVariableSubstitution>> sVariableSubstitutors;

const GString cTrue = QStringLiteral("true");
const GString cFalse = QStringLiteral("false");

GPathName GetPreferencesFile(int32_t folder, const GString& name)
{
    return GFileSystemBase::GetSpecialPath(folder).GetChild(name);
}
}  // namespace

void GPreferences::Initialize()
{
    if (sEncoding != nullptr)
        return;
    sEncoding = GEncoding::GetUTF16();
    AddVariableSubstitution(std::make_unique<GFolderSubstitution>(QStringLiteral("%MorvaneUserPreferences%"),
                                                                  GSpecialPath::cUserPreferences));
    AddVariableSubstitution(std::make_unique<GFolderSubstitution>(
        QStringLiteral("%MorvaneGlobalPreferences%"), GSpecialPath::cGlobalPreferences));
}

void GPreferences::Finalize()
{
    const auto empty = [] {
        sModules.Clear();
        sEncoding.reset();
        while (!sVariableSubstitutors.empty())
            sVariableSubstitutors.pop_back();
    };
    try {
        FlushPrefs();
    } catch (const GException&) {
        empty();
        throw;
    }
    empty();
}

void GPreferences::SetDefaultModules(const GString& applicationName, uint32_t flags)
{
    const GEncodingRef encoding = sEncoding != nullptr ? sEncoding : GEncoding::GetUTF16();
    if ((flags & cWithUserFile) != 0) {
        SetPrefModule(cUserFileModule, std::make_unique<GPrefFileModule>(
                                           GetPreferencesFile(GSpecialPath::cUserPreferences,
                                                              applicationName + QStringLiteral(".uprefs")),
                                           encoding));
    }
    if ((flags & cWithSharedFile) != 0) {
        SetPrefModule(cSharedFileModule, std::make_unique<GPrefSharedFileModule>(
                                             GetPreferencesFile(GSpecialPath::cUserPreferences,
                                                                QStringLiteral("Morvane.uprefs")),
                                             GEncoding::GetUTF16()));
    }
    if ((flags & cWithSystemFile) != 0) {
        SetPrefModule(cSystemFileModule, std::make_unique<GPrefFileModule>(
                                             GetPreferencesFile(GSpecialPath::cGlobalPreferences,
                                                                applicationName + QStringLiteral(".sprefs")),
                                             encoding));
    }
    if ((flags & cWithMemory) != 0)
        SetPrefModule(cMemoryModule, std::make_unique<GPrefMemoryModule>());
}

void GPreferences::SetPrefModule(int32_t id, std::unique_ptr<GPrefModule> module)
{
    GPrefModule* const address = module.get();
    sModules.Put(id, address, std::move(module));
}

void GPreferences::SetPrefModule(int32_t id, GPrefModule& module)
{
    sModules.Put(id, &module, nullptr);
}

GPrefModule* GPreferences::GetPrefModule(int32_t id)
{
    return sModules.Find(id);
}

void GPreferences::RemovePrefModule(int32_t id)
{
    sModules.Remove(id);
}

void GPreferences::SetEncoding(const GEncodingRef& encoding)
{
    sEncoding = encoding;
    for (auto data = sModules.rbegin(); data != sModules.rend(); ++data)
        data->module->SetEncoding(encoding);
}

void GPreferences::AddVariableSubstitution(std::unique_ptr<GVariableSubstitution> substitution)
{
    sVariableSubstitutors.push_back(std::move(substitution));
}

void GPreferences::FlushPrefs()
{
    sModules.ForEach([](GPrefModule& module) { module.FlushPrefs(); });
}

void GPreferences::Refresh()
{
    try {
        sModules.ForEach([](GPrefModule& module) { module.Refresh(); });
    } catch (const GException&) {
        CopySharedPreferences();
        throw;
    }
    CopySharedPreferences();
}

bool GPreferences::IsDirty()
{
    for (const GPrefsData& data : sModules) {
        if (data.module->IsDirty())
            return true;
    }
    return false;
}

void GPreferences::StartUsingTempModules()
{
    sModules.ForEach([](GPrefModule& module) { module.StartUsingTempModule(); });
}

void GPreferences::EndUsingTempModules(bool keep)
{
    sModules.ForEach([keep](GPrefModule& module) { module.EndUsingTempModule(keep); });
}

void GPreferences::UpdatePreferencesWith(const std::vector<std::pair<int32_t, const GPrefModule*>>& modules)
{
    for (const auto& [id, module] : modules) {
        if (GPrefModule* target = sModules.Find(id))
            target->UpdateWith(*module);
    }
}

bool GPreferences::Has(const GBuffer& group, const GBuffer& key)
{
    for (const GPrefsData& data : sModules) {
        if (data.module->Has(group, key))
            return true;
    }
    return false;
}

bool GPreferences::Has(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return Find(id, group, key) != nullptr;
}

void GPreferences::GetGroupNames(int32_t id, std::vector<GBuffer>& names)
{
    names.clear();
    if (const GPrefModule* module = sModules.Find(id))
        module->GetGroupNames(names);
}

const GString* GPreferences::Find(const GBuffer& group, const GBuffer& key)
{
    const GPrefModule* shared = IsPrefSharing(group) ? sModules.Find(cSharedFileModule) : nullptr;
    return shared != nullptr ? shared->Find(group, key) : FindNonShared(group, key);
}

const GString* GPreferences::Find(int32_t id, const GBuffer& group, const GBuffer& key)
{
    const GPrefModule* module = sModules.Find(id);
    return module != nullptr ? module->Find(group, key) : nullptr;
}

const GString* GPreferences::FindNonShared(const GBuffer& group, const GBuffer& key)
{
    for (const GPrefsData& data : sModules) {
        if (data.id == cSharedFileModule)
            continue;
        if (const GString* value = data.module->Find(group, key))
            return value;
    }
    return nullptr;
}

// The shared module where a group that is meant for another one lives in it; null where it does not.
GPrefModule* GPreferences::FindShared(int32_t id, const GBuffer& group)
{
    GPrefModule* shared = id == cUserFileModule ? sModules.Find(cSharedFileModule) : nullptr;
    return shared != nullptr && IsPrefSharing(group) ? shared : nullptr;
}

GPrefModule* GPreferences::GetTarget(int32_t id, const GBuffer& group)
{
    GPrefModule* shared = FindShared(id, group);
    GPrefModule* target = shared != nullptr ? shared : sModules.Find(id);
    if (target == nullptr)
        GTrace::Assert(QStringLiteral("GPreferences::Set"), QStringLiteral("there is no module %1").arg(id));
    return target;
}

void GPreferences::SetPrefSharing(int32_t id, const GBuffer& group, bool isShared)
{
    if (GPrefModule* module = GetTarget(id, PrefSharing::GetGroup()))
        module->Set(PrefSharing::GetGroup(), group, isShared ? cTrue : cFalse);
}

bool GPreferences::IsPrefSharing(const GBuffer& group)
{
    for (const GPrefsData& data : sModules) {
        if (data.id == cSharedFileModule || !data.module->HasSharingMarks())
            continue;
        if (const GString* mark = data.module->Find(PrefSharing::GetGroup(), group))
            return *mark == cTrue && group != PrefSharing::GetGroup();
    }
    return false;
}

void GPreferences::CopySharedPreferences()
{
    std::set<GBuffer> groups;
    for (const GPrefsData& data : sModules) {
        std::vector<GBuffer> keys;
        if (data.id != cSharedFileModule)
            data.module->GetGroupPreferences(PrefSharing::GetGroup(), keys);
        groups.insert(keys.begin(), keys.end());
    }
    for (const GBuffer& group : groups)
        CopySharedPreferencesGroup(group);
}

void GPreferences::CopySharedPreferencesGroup(const GBuffer& group)
{
    GPrefModule* shared = sModules.Find(cSharedFileModule);
    if (shared == nullptr || !IsPrefSharing(group))
        return;
    for (const GPrefsData& data : sModules) {
        GPrefGroup preferences;
        if (data.id != cSharedFileModule)
            data.module->GetGroupPreferences(group, preferences);
        for (const auto& preference : preferences) {
            if (!shared->Has(group, preference.key))
                shared->Set(group, preference.key, preference.value);
        }
    }
}

GString GPreferences::Store(Kind kind, const GString& text)
{
    GString stored = text;
    for (const auto& substitution : sVariableSubstitutors) {
        if (substitution->IsResponsible(kind))
            stored = substitution->InsertVariables(stored);
    }
    return stored;
}

GString GPreferences::Load(Kind kind, const GString* stored)
{
    GString text = stored != nullptr ? *stored : GString();
    for (const auto& substitution : sVariableSubstitutors) {
        if (substitution->IsResponsible(kind))
            text = substitution->ReplaceVariables(text);
    }
    return text;
}
