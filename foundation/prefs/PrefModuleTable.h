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

    // Does something with each module in turn. When it raises, the rest has its turn, and the first exception
    // comes through.
    void ForEach(const std::function<void(GPrefModule&)>& action) const;

    std::vector<GPrefsData>::const_iterator begin() const { return mModules.begin(); }
    std::vector<GPrefsData>::const_iterator end() const { return mModules.end(); }
    std::vector<GPrefsData>::const_reverse_iterator rbegin() const { return mModules.rbegin(); }
    std::vector<GPrefsData>::const_reverse_iterator rend() const { return mModules.rend(); }

private:
    std::vector<GPrefsData> mModules;
};
