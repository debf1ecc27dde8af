#include "plugin/shell/GIDCSPStartupShutdown.h"

#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"

#include <QScopedValueRollback>

namespace
{
// An entry of a menu, with the action that it stands for.
struct MenuEntry
{
    ActionID action;
    const char* area;
    const char* menuPath;
    double position;
};

const MenuEntry cEntries[] = {
    {PlugInID::cDocumentAction, "KBSCE File menu", "Main:&File", 1301.0},
    {PlugInID::cBookAction, "KBSCE Palette Menus: Book: ", "BookPanelPopup", 1101.0},
};

// Keys of the host's, and a name that the plug-in gives when menus are shown.
PMString MakeKey(const char* key)
{
    return PMString::Untranslated(QString::fromLatin1(key));
}

void AddEntry(const MenuEntry& entry, IActionManager& actions, IMenuManager& menus)
{
    if (actions.IsActionKnown(entry.action))
        return;
    actions.AddAction(PlugInID::cActionComponent, entry.action, MakeKey(""), MakeKey(entry.area),
                      ActionFlags());
    menus.AddMenuItem(entry.action, MakeKey(entry.menuPath), entry.position, MenuItemFlags());
}

HostPtr<IActionManager> QueryActionManager()
{
    const HostPtr<ISession> session = GetExecutionContextSession();
    if (!session)
        return {};
    const HostPtr<IApplication> application = session->QueryApplication();
    return application ? application->QueryActionManager() : HostPtr<IActionManager>();
}

void AddEntries()
{
    const HostPtr<IActionManager> actions = QueryActionManager();
    if (!actions)
        return;
    const HostPtr<IMenuManager> menus = actions->QueryMenuManager();
    if (!menus)
        return;
    for (const MenuEntry& entry : cEntries)
        AddEntry(entry, *actions, *menus);
}
}  // namespace

void GIDCSPStartupShutdown::Startup()
{
    const QScopedValueRollback<bool> starting(mIsStarting, true);
    HostFault::Contain("GIDCSPStartupShutdown::Startup", AddEntries);
}

void GIDCSPStartupShutdown::Shutdown() {}
