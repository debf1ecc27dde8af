#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IBook.h"

// What the host asks of an action, apart from its name and place.
struct ActionFlags
{
    int32_t type = 0;            // 0: an ordinary action
    int32_t enabling = 1;        // 1: the owner answers, each time a menu is shown
    int32_t selection = 0;       // the selection that the action depends on; 0: none
    int32_t shortcutEditor = 1;  // 1: the user finds it in the editor of keyboard shortcuts
};

// What the host asks of a menu item, apart from its action and place.
struct MenuItemFlags
{
    bool isDynamic = false;      // made anew each time the menu is shown
    bool hasOwnSubmenu = false;  // stands for a list of entries
};

// The application's menus.
class IMenuManager : public IHostObject
{
public:
    // Puts an action into a menu. The path leads from a menu bar or panel to the menu, with ":" between its
    // parts. The menu's entries are in the order of their positions. Host: the menu manager's add of a menu
    // item, with the two flags in the order of MenuItemFlags.
    virtual void AddMenuItem(ActionID action, const PMString& menuPath, double position,
                             const MenuItemFlags& flags) = 0;

protected:
    ~IMenuManager() = default;
};

// The application's actions: what menu entries and keyboard shortcuts start.
class IActionManager : public IHostObject
{
public:
    virtual bool IsActionKnown(ActionID action) const = 0;

    // Adds an action. The owner is called when the user chooses it and when the host needs its state. The
    // area is the group of the action in the editor of keyboard shortcuts; it is a key of the host, including
    // its blanks. Host: the action manager's add of an action, with the four flags in the order of
    // ActionFlags.
    virtual void AddAction(ClassID owner, ActionID action, const PMString& name, const PMString& area,
                           const ActionFlags& flags) = 0;

    // Host: the action manager's interface 53764.
    virtual HostPtr<IMenuManager> QueryMenuManager() const = 0;

protected:
    ~IActionManager() = default;
};

class IApplication : public IHostObject
{
public:
    // Host: the application's action manager.
    virtual HostPtr<IActionManager> QueryActionManager() const = 0;

protected:
    ~IApplication() = default;
};

// The running session of the host.
class ISession : public IHostObject
{
public:
    // Host: the session's application.
    virtual HostPtr<IApplication> QueryApplication() const = 0;

    // Host: interface 0x10001 of the session.
    virtual HostPtr<IBookManager> QueryBookManager() const = 0;

protected:
    ~ISession() = default;
};

// The units in which the host shows lengths.
class IUnitOfMeasureSettings : public IHostObject
{
public:
    // One of HostUnitID, or a unit of another class. Host: the preference's horizontal unit.
    virtual ClassID GetHorizontalUnit() const = 0;

protected:
    ~IUnitOfMeasureSettings() = default;
};
