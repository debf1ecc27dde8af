#include "foundation/prefs/PrefChanges.h"

#include "foundation/prefs/GPrefModule.h"

PrefChanges::PrefChanges(const GPrefGroups& from, const GPrefGroups& to)
{
    for (const auto& group : to)
        AddSet(group.key, from.Find(group.key), group.value);
    for (const auto& group : from)
        AddRemoved(group.key, group.value, to.Find(group.key));
}

void PrefChanges::AddSet(const GBuffer& group, const GPrefGroup* from, const GPrefGroup& to)
{
    for (const auto& preference : to) {
        const GString* before = from != nullptr ? from->Find(preference.key) : nullptr;
        if (before == nullptr || *before != preference.value)
            mChanges.push_back({group, preference.key, preference.value, false});
    }
}

void PrefChanges::AddRemoved(const GBuffer& group, const GPrefGroup& from, const GPrefGroup* to)
{
    for (const auto& preference : from) {
        if (to == nullptr || !to->Has(preference.key))
            mChanges.push_back({group, preference.key, GString(), true});
    }
}

void PrefChanges::ApplyTo(GPrefModule& module) const
{
    for (const Change& change : mChanges) {
        if (change.isRemoval)
            module.Remove(change.group, change.key);
        else
            module.Set(change.group, change.key, change.value);
    }
}
