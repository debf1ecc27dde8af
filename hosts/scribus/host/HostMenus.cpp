#include "hosts/scribus/host/HostMenus.h"

#include <algorithm>

const QString HostMenuPath::cFile = QStringLiteral("Main:&File");
const QString HostMenuPath::cBookPanel = QStringLiteral("BookPanelPopup");

// The list that the owner of the actions writes its answers into.
class HostMenus::States final : public IActionStateList
{
public:
    explicit States(std::vector<Action>& actions) : mActions(actions) {}

    int32_t Length() const override { return static_cast<int32_t>(mActions.size()); }
    ActionID GetNthAction(int32_t index) const override { return At(index).id; }

    void SetNthActionEnabled(int32_t index, bool isEnabled) override { At(index).isEnabled = isEnabled; }
    void SetNthActionName(int32_t index, const PMString& name) override { At(index).name = name.GetString(); }
    void SetNthActionShortcut(int32_t index, const PMString& shortcut) override
    {
        At(index).shortcut = shortcut.GetString();
    }

private:
    Action& At(int32_t index) const { return mActions.at(static_cast<size_t>(index)); }

    std::vector<Action>& mActions;
};

bool HostMenus::IsActionKnown(ActionID action) const
{
    return Find(action) != nullptr;
}

// The area groups actions in an editor of shortcuts, which this host has not.
void HostMenus::AddAction(ClassID, ActionID action, const PMString& name, const PMString&, const ActionFlags&)
{
    if (!IsActionKnown(action))
        mActions.push_back({action, name.GetString(), {}, false});
}

HostPtr<IMenuManager> HostMenus::QueryMenuManager() const
{
    return HostPtr<IMenuManager>::Adopt(&mMenus);
}

void HostMenus::Items::AddMenuItem(ActionID action, const PMString& menuPath, double position,
                                   const MenuItemFlags&)
{
    items.push_back({action, menuPath.GetString(), position});
}

void HostMenus::UpdateStates(IActionComponent& owner)
{
    States states(mActions);
    owner.UpdateActionStates(nullptr, states);
}

std::vector<HostMenuEntry> HostMenus::GetEntries(const QString& menuPath) const
{
    std::vector<HostMenuEntry> entries;
    for (const Item& item : mMenus.items) {
        if (item.menuPath != menuPath)
            continue;
        HostMenuEntry entry;
        entry.action = item.action;
        entry.position = item.position;
        if (const Action* action = Find(item.action)) {
            entry.name = action->name;
            entry.shortcut = action->shortcut;
            entry.isEnabled = action->isEnabled;
        }
        entries.push_back(entry);
    }
    std::stable_sort(
        entries.begin(), entries.end(),
        [](const HostMenuEntry& one, const HostMenuEntry& other) { return one.position < other.position; });
    return entries;
}

bool HostMenus::IsEnabled(ActionID action) const
{
    const Action* found = Find(action);
    return found != nullptr && found->isEnabled;
}

const HostMenus::Action* HostMenus::Find(ActionID action) const
{
    const auto found = std::find_if(mActions.begin(), mActions.end(),
                                    [action](const Action& known) { return known.id == action; });
    return found == mActions.end() ? nullptr : &*found;
}
