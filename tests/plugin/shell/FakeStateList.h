#pragma once

#include "plugin/host/CActionComponent.h"

#include <vector>

// The states that a host asks for, with what they were set to.
class FakeStateList final : public IActionStateList
{
public:
    struct State
    {
        ActionID action = 0;
        int isEnabled = -1;  // -1 while nobody has set it
        QString name;
        QString shortcut;
    };

    explicit FakeStateList(const std::vector<ActionID>& actions)
    {
        for (const ActionID action : actions)
            states.push_back({action, -1, QString(), QString()});
    }

    int32_t Length() const override { return static_cast<int32_t>(states.size()); }
    ActionID GetNthAction(int32_t index) const override { return At(index).action; }
    void SetNthActionEnabled(int32_t index, bool isEnabled) override { At(index).isEnabled = isEnabled; }
    void SetNthActionName(int32_t index, const PMString& name) override { At(index).name = name.GetString(); }
    void SetNthActionShortcut(int32_t index, const PMString& shortcut) override
    {
        At(index).shortcut = shortcut.GetString();
    }

    std::vector<State> states;

private:
    State& At(int32_t index) { return states.at(static_cast<size_t>(index)); }
    const State& At(int32_t index) const { return states.at(static_cast<size_t>(index)); }
};
