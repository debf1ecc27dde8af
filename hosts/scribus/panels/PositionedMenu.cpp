#include "hosts/scribus/panels/PositionedMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include <algorithm>

PositionedMenu::PositionedMenu(QMenu& menu) : mMenu(menu) {}

QAction* PositionedMenu::Add(double position, const QString& name, const std::function<void()>& choose)
{
    return Insert(position, 0, name, choose);
}

void PositionedMenu::Finish(const std::vector<HostMenuEntry>& entries, const Runner& run)
{
    for (const HostMenuEntry& entry : entries)
        Insert(entry.position, entry.action, entry.name, [run, action = entry.action] { run(action); });
    UpdatePlugInEntries(entries);
    Lay();
}

void PositionedMenu::UpdatePlugInEntries(const std::vector<HostMenuEntry>& entries)
{
    for (const HostMenuEntry& entry : entries) {
        for (const Item& item : mItems) {
            if (item.plugInAction != entry.action)
                continue;
            item.action->setText(entry.name);
            item.action->setShortcut(QKeySequence(entry.shortcut, QKeySequence::PortableText));
            item.action->setEnabled(entry.isEnabled);
        }
    }
}

QAction* PositionedMenu::Insert(double position, ActionID plugInAction, const QString& name,
                                const std::function<void()>& choose)
{
    auto* action = new QAction(name, &mMenu);
    QObject::connect(action, &QAction::triggered, action, [choose] { choose(); });
    const auto behind =
        std::upper_bound(mItems.begin(), mItems.end(), position,
                         [](double wanted, const Item& item) { return wanted < item.position; });
    mItems.insert(behind, {position, plugInAction, action});
    return action;
}

void PositionedMenu::Lay() const
{
    int hundred = mItems.empty() ? 0 : static_cast<int>(mItems.front().position / 100);
    for (const Item& item : mItems) {
        const int itsHundred = static_cast<int>(item.position / 100);
        if (itsHundred != hundred)
            mMenu.addSeparator();
        hundred = itsHundred;
        mMenu.addAction(item.action);
    }
}
