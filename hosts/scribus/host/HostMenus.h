#pragma once

#include "plugin/host/CActionComponent.h"
#include "plugin/host/IApplication.h"

#include <QString>

#include <vector>

// Menu paths that plug-ins know this host's menus by.
namespace HostMenuPath
{
extern const QString cFile;       // the File menu of the menu bar
extern const QString cBookPanel;  // the popup menu of the Book panel
}  // namespace HostMenuPath

// An entry of a menu, with what the owner of its action said about it last.
struct HostMenuEntry
{
    ActionID action = 0;
    double position = 0;
    QString name;
    QString shortcut;  // empty where the owner supplied none
    bool isEnabled = false;
};

// The actions and menu entries that plug-ins registered: what the window builds its menus from, and what the
// command line looks a choice up in. An entry of an action that nobody added is kept, and stays greyed.
//
// Lives as long as the host does, so references to it are not counted. For the main thread.
class HostMenus final : public IActionManager
{
public:
    void AddRef() const noexcept override {}
    void Release() const noexcept override {}

    bool IsActionKnown(ActionID action) const override;
    void AddAction(ClassID owner, ActionID action, const PMString& name, const PMString& area,
                   const ActionFlags& flags) override;
    HostPtr<IMenuManager> QueryMenuManager() const override;

    // Asks the owner of the actions for their names, shortcuts and whether they can be chosen now. A host
    // does so before it shows a menu.
    void UpdateStates(IActionComponent& owner);

    // The entries of a menu, by position; those of one position in the order in which they came.
    std::vector<HostMenuEntry> GetEntries(const QString& menuPath) const;

    // Whether the action was registered and can be chosen, by the last answer of its owner.
    bool IsEnabled(ActionID action) const;

private:
    class States;

    struct Action
    {
        ActionID id;
        QString name;
        QString shortcut;
        bool isEnabled;
    };

    struct Item
    {
        ActionID action;
        QString menuPath;
        double position;
    };

    class Items final : public IMenuManager
    {
    public:
        void AddRef() const noexcept override {}
        void Release() const noexcept override {}
        void AddMenuItem(ActionID action, const PMString& menuPath, double position,
                         const MenuItemFlags& flags) override;

        std::vector<Item> items;
    };

    const Action* Find(ActionID action) const;

    std::vector<Action> mActions;
    mutable Items mMenus;  // handed out by a query, to be filled
};
