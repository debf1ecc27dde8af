#pragma once

#include "foundation/prefs/GPrefGroups.h"

#include <vector>

class GPrefModule;

// The difference between two states of a module's groups: the values that were set and the keys that were
// removed.
class PrefChanges
{
public:
    PrefChanges(const GPrefGroups& from, const GPrefGroups& to);

    bool IsEmpty() const { return mChanges.empty(); }

    // Makes the changes to a module, whatever its state. The module is dirty then, unless there are no
    // changes.
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
