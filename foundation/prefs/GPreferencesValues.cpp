#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefModule.h"
#include "foundation/prefs/GPreferences.h"

GString GPreferences::Get(const GBuffer& group, const GBuffer& key)
{
    return Load(Kind::cString, Find(group, key));
}

GString GPreferences::Get(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return Load(Kind::cString, Find(id, group, key));
}

int32_t GPreferences::GetInt32(const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToInt32(Get(group, key));
}

int32_t GPreferences::GetInt32(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToInt32(Get(id, group, key));
}

bool GPreferences::GetBool(const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToBool(Get(group, key));
}

bool GPreferences::GetBool(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToBool(Get(id, group, key));
}

double GPreferences::GetReal(const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToReal(Get(group, key));
}

double GPreferences::GetReal(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToReal(Get(id, group, key));
}

GPathName GPreferences::GetPathName(const GBuffer& group, const GBuffer& key)
{
    return LoadPathName(Find(group, key));
}

GPathName GPreferences::GetPathName(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return LoadPathName(Find(id, group, key));
}

GDateTime GPreferences::GetDateTime(const GBuffer& group, const GBuffer& key)
{
    return GDateTime::FromText(Get(group, key));
}

GDateTime GPreferences::GetDateTime(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GDateTime::FromText(Get(id, group, key));
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GString& value)
{
    const GString* stored = Find(group, key);
    value = Load(Kind::cString, stored);
    return stored != nullptr;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, int32_t& value)
{
    GString text;
    const bool isFound = Get(group, key, text);
    value = GStringSupport::ToInt32(text);
    return isFound;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, bool& value)
{
    GString text;
    const bool isFound = Get(group, key, text);
    value = GStringSupport::ToBool(text);
    return isFound;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, double& value)
{
    GString text;
    const bool isFound = Get(group, key, text);
    value = GStringSupport::ToReal(text);
    return isFound;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GPathName& value)
{
    const GString* stored = Find(group, key);
    value = LoadPathName(stored);
    return stored != nullptr;
}

bool GPreferences::Get(const GBuffer& group, const GBuffer& key, GDateTime& value)
{
    GString text;
    const bool isFound = Get(group, key, text);
    value = GDateTime::FromText(text);
    return isFound;
}

GString GPreferences::GetNonSharedPref(const GBuffer& group, const GBuffer& key)
{
    return Load(Kind::cString, FindNonShared(group, key));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value)
{
    if (GPrefModule* module = GetTarget(id, group))
        module->Set(group, key, Store(Kind::cString, value));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, int32_t value)
{
    Set(id, group, key, GStringSupport::FromInt32(value));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, bool value)
{
    Set(id, group, key, GStringSupport::FromBool(value));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, double value)
{
    Set(id, group, key, GStringSupport::FromReal(value));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, const char* utf8Text)
{
    Set(id, group, key, GString::fromUtf8(utf8Text));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, const GPathName& value)
{
    if (GPrefModule* module = GetTarget(id, group))
        module->Set(group, key, Store(Kind::cPathName, value.GetNativePath()));
}

void GPreferences::Set(int32_t id, const GBuffer& group, const GBuffer& key, const GDateTime& value)
{
    Set(id, group, key, value.GetText());
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

void GPreferences::SetScramble(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value)
{
    Set(id, group, key, GStringSupport::Scramble(value));
}

void GPreferences::SetScramble(int32_t id, const GBuffer& group, const GBuffer& key, int32_t value)
{
    SetScramble(id, group, key, GStringSupport::FromInt32(value));
}

GString GPreferences::GetUnscramble(const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::DeScramble(Get(group, key));
}

GString GPreferences::GetUnscramble(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::DeScramble(Get(id, group, key));
}

int32_t GPreferences::GetUnscrambleInt32(const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToInt32(GetUnscramble(group, key));
}

int32_t GPreferences::GetUnscrambleInt32(int32_t id, const GBuffer& group, const GBuffer& key)
{
    return GStringSupport::ToInt32(GetUnscramble(id, group, key));
}
