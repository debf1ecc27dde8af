#pragma once

#include "foundation/prefs/GPrefGroups.h"

#include <vector>

class GPrefModule;

// What leads from one state of a module's groups to another: the values that were set and the keys that went.
class PrefChanges
{
public:
    PrefChanges(const GPrefGroups& from, const GPrefGroups& to);

    bool IsEmpty() const { return mChanges.empty(); }

    // Makes the changes to a module, whatever its state: it is dirty then, unless there are none.
    void ApplyTo(GPrefModule& module) const;

private:
    struct Change
    {
        GBuffer group;
        GBuffer key;
        GString value;
        bool isRemoval;
    };

    void AddSet(const GBuffer& group, const GPrefGroup* from, const GPrefGroup& to);
    void AddRemoved(const GBuffer& group, const GPrefGroup& from, const GPrefGroup* to);

    std::vector<Change> mChanges;
};
