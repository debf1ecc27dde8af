#pragma once

#include "foundation/prefs/GPrefModule.h"

#include <functional>
#include <memory>
#include <vector>

// A module in the store.
struct GPrefsData
{
    int32_t id;
    GPrefModule* module;
    std::unique_ptr<GPrefModule> owned;  // the module, when the store owns it
};

// The store's modules, by descending number.
class PrefModuleTable
{
public:
    void Put(int32_t id, GPrefModule* module, std::unique_ptr<GPrefModule> owned);
    void Remove(int32_t id);
    void Clear() { mModules.clear(); }

    // The module; null when there is none.
    GPrefModule* Find(int32_t id) const;

    // Calls `action` for each module. When it raises, the other modules are still done, and the first
    // exception is passed on.
    void ForEach(const std::function<void(GPrefModule&)>& action) const;

    std::vector<GPrefsData>::const_iterator begin() const { return mModules.begin(); }
    std::vector<GPrefsData>::const_iterator end() const { return mModules.end(); }
    std::vector<GPrefsData>::const_reverse_iterator rbegin() const { return mModules.rbegin(); }
    std::vector<GPrefsData>::const_reverse_iterator rend() const { return mModules.rend(); }

private:
    std::vector<GPrefsData> mModules;
};
