#pragma once

#include "hosts/scribus/host/HostMenus.h"

#include <QObject>

#include <functional>
#include <vector>

class QAction;
class QMenu;

// A menu whose entries, the window's own and the plug-in's, stand in the order of their positions. Entries of
// one hundred stand together; a line separates them from the next.
class PositionedMenu
{
public:
    // Runs an action of the plug-in's.
    using Runner = std::function<void(ActionID action)>;

    // Fills `menu`, which outlives this.
    explicit PositionedMenu(QMenu& menu);

    // An entry of the window's own, which shows once the menu is finished.
    QAction* Add(double position, const QString& name, const std::function<void()>& choose);

    // Adds the entries that the plug-in registered for this menu, and lays the menu out. Once.
    void Finish(const std::vector<HostMenuEntry>& entries, const Runner& run);

    // Takes the names, shortcuts and states of the plug-in's entries. Shortcuts work from then on without the
    // menu being open.
    void UpdatePlugInEntries(const std::vector<HostMenuEntry>& entries);

private:
    struct Item
    {
        double position;
        ActionID plugInAction;  // 0 for an entry of the window's own
        QAction* action;
    };

    QAction* Insert(double position, ActionID plugInAction, const QString& name,
                    const std::function<void()>& choose);
    void Lay() const;

    QMenu& mMenu;
    std::vector<Item> mItems;
};
