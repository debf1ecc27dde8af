#include "foundation/prefs/PrefModuleTable.h"

#include "foundation/core/GException.h"

#include <algorithm>
#include <exception>

void PrefModuleTable::Put(int32_t id, GPrefModule* module, std::unique_ptr<GPrefModule> owned)
{
    const auto place = std::find_if(mModules.begin(), mModules.end(),
                                    [id](const GPrefsData& data) { return data.id <= id; });
    GPrefsData data{id, module, std::move(owned)};
    if (place != mModules.end() && place->id == id)
        *place = std::move(data);
    else
        mModules.insert(place, std::move(data));
}

void PrefModuleTable::Remove(int32_t id)
{
    const auto isIt = [id](const GPrefsData& data) { return data.id == id; };
    mModules.erase(std::remove_if(mModules.begin(), mModules.end(), isIt), mModules.end());
}

GPrefModule* PrefModuleTable::Find(int32_t id) const
{
    for (const GPrefsData& data : mModules) {
        if (data.id == id)
            return data.module;
    }
    return nullptr;
}

void PrefModuleTable::ForEach(const std::function<void(GPrefModule&)>& action) const
{
    std::exception_ptr first;
    for (const GPrefsData& data : mModules) {
        try {
            action(*data.module);
        } catch (const GException&) {
            if (first == nullptr)
                first = std::current_exception();
        }
    }
    if (first != nullptr)
        std::rethrow_exception(first);
}
