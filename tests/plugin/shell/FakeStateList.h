#pragma once

#include "plugin/host/CActionComponent.h"

#include <QStringList>

#include <vector>

// The states that a host asks for, and what they were set to, in order: "4711 on", "4711 called Name",
// "4711 by Ctrl+N".
class FakeStateList final : public IActionStateList
{
public:
    explicit FakeStateList(std::vector<ActionID> actions) : mActions(std::move(actions)) {}

    int32_t Length() const override { return static_cast<int32_t>(mActions.size()); }
    ActionID GetNthAction(int32_t index) const override { return mActions.at(static_cast<size_t>(index)); }
    void SetNthActionEnabled(int32_t index, bool isEnabled) override
    {
        Note(index, isEnabled ? QStringLiteral("on") : QStringLiteral("off"));
    }
    void SetNthActionName(int32_t index, const PMString& name) override
    {
        Note(index, QStringLiteral("called ") + name.GetString());
    }
    void SetNthActionShortcut(int32_t index, const PMString& shortcut) override
    {
        Note(index, QStringLiteral("by ") + shortcut.GetString());
    }

    QStringList set;

private:
    void Note(int32_t index, const QString& what)
    {
        set.append(QStringLiteral("%1 %2").arg(GetNthAction(index)).arg(what));
    }

    std::vector<ActionID> mActions;
};
