#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/trace/GTrace.h"

// The variables of a path may make it one that is none, too.
GPathName GPreferences::LoadPathName(const GString* stored)
{
    try {
        return PrefText<GPathName>::From(Load(PrefText<GPathName>::cKind, stored));
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPreferences::GetPathName"), error.GetDescription());
        return GPathName();
    }
}

void GPreferences::SetText(int32_t id, const GBuffer& group, const GBuffer& key, const GString& stored)
{
    if (GPrefModule* module = GetTarget(id, group))
        module->Set(group, key, stored);
}

void GPreferences::SetIgnoreTemp(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value)
{
    if (GPrefModule* module = GetTarget(id, group))
        module->SetIgnoreTemp(group, key, Store(Kind::cString, value));
}

bool GPreferences::IsOpenForDefault(int32_t id, const GBuffer& group, const GBuffer& key)
{
    const GPrefModule* target = GetTarget(id, group);
    return target != nullptr && !target->Has(group, key) && !Has(id, group, key);
}

void GPreferences::Remove(int32_t id, const GBuffer& group, const GBuffer& key)
{
    for (GPrefModule* module : {GetPrefModule(id), FindShared(id, group)}) {
        if (module != nullptr)
            module->Remove(group, key);
    }
}

void GPreferences::Remove(int32_t id, const GBuffer& group)
{
    for (GPrefModule* module : {GetPrefModule(id), FindShared(id, group)}) {
        if (module != nullptr)
            module->RemoveGroup(group);
    }
}
