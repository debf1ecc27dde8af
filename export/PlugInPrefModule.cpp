#include "export/PlugInPrefModule.h"

#include <optional>

namespace
{
// What has to be done to a key; no value: it is to go.
struct KeyChange
{
    GBuffer group;
    GBuffer key;
    std::optional<GString> value;
};

const GString* Find(const GPrefGroups& groups, const GBuffer& group, const GBuffer& key)
{
    const GPrefGroup* preferences = groups.Find(group);
    return preferences != nullptr ? preferences->Find(key) : nullptr;
}

std::vector<KeyChange> Compare(const GPrefGroups& before, const GPrefGroups& now)
{
    std::vector<KeyChange> changes;
    for (const auto& group : now) {
        for (const auto& preference : group.value) {
            const GString* old = Find(before, group.key, preference.key);
            if (old == nullptr || *old != preference.value)
                changes.push_back({group.key, preference.key, preference.value});
        }
    }
    for (const auto& group : before) {
        for (const auto& preference : group.value) {
            if (Find(now, group.key, preference.key) == nullptr)
                changes.push_back({group.key, preference.key, {}});
        }
    }
    return changes;
}

void Apply(const std::vector<KeyChange>& changes, GPrefModule& module)
{
    for (const KeyChange& change : changes) {
        if (change.value)
            module.Set(change.group, change.key, *change.value);
        else
            module.Remove(change.group, change.key);
    }
}
}  // namespace

PlugInPrefModule::PlugInPrefModule(const GPathName& path)
    : GPrefSharedFileModule(path, GEncoding::GetUTF16()), mStored(GetGroups())
{
}

void PlugInPrefModule::ReadDict()
{
    GPrefSharedFileModule::ReadDict();
    mStored = GetGroups();
}

void PlugInPrefModule::WriteDict()
{
    if (IsDirty())
        Change([](GPrefModule&) {});
}

void PlugInPrefModule::Change(const std::function<void(GPrefModule&)>& change)
{
    const std::vector<KeyChange> own = Compare(mStored, GetGroups());
    try {
        ChangeUnderLock([&](GPrefModule& module) {
            Apply(own, module);
            change(module);
        });
    } catch (...) {
        Apply(own, *this);
        throw;
    }
    mStored = GetGroups();
}
