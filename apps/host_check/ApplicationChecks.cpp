#include "apps/host_check/ApplicationChecks.h"

#include "apps/host_check/CheckReport.h"
#include "apps/host_check/WatchedHost.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/hopbox_adaptor.h"

using Table = hopbox_host_table;
using Boundary::PassedText;

void ApplicationChecks::Run()
{
    CheckUnit();
    CheckModalState();
    CheckAlerts();
    CheckActions();
}

void ApplicationChecks::CheckUnit()
{
    int32_t unit = -1;
    if (mHost.GetTable().get_unit != nullptr)
        mReport.Expect(mHost.Call(&Table::get_unit, &unit) == HOPBOX_OK && unit >= HOPBOX_POINTS &&
                           unit <= HOPBOX_MILLIMETRES,
                       "get_unit", QStringLiteral("one of hopbox_unit"));
}

void ApplicationChecks::CheckModalState()
{
    const Table& table = mHost.GetTable();
    if (table.begin_modal == nullptr || table.end_modal == nullptr)
        return;
    uint64_t outer = 0;
    uint64_t inner = 0;
    const int32_t result = mHost.Call(&Table::begin_modal, &outer);
    mReport.Expect(result != HOPBOX_OK || outer != 0, "begin_modal", QStringLiteral("a token that is not 0"));
    if (result != HOPBOX_OK)
        return;
    mReport.Expect(mHost.Call(&Table::begin_modal, &inner) == HOPBOX_OK, "begin_modal",
                   QStringLiteral("a second one within the first"));
    ExpectResting("begin_modal", 1);
    table.end_modal(mHost.GetHost(), inner);
    table.end_modal(mHost.GetHost(), outer);
    ExpectResting("end_modal", 0);
}

void ApplicationChecks::ExpectResting(const char* operation, int wanted)
{
    int32_t isResting = -1;
    if (mAdaptor.is_resting != nullptr)
        mReport.Expect(
            mAdaptor.is_resting(mAdaptor.host, &isResting) == HOPBOX_OK && isResting == wanted, operation,
            wanted != 0 ? QStringLiteral("the host rests") : QStringLiteral("the host rests no more"));
}

void ApplicationChecks::CheckAlerts()
{
    if (mHost.GetTable().show_alert == nullptr || mAdaptor.answer_alert == nullptr)
        return;
    const PassedText text(QStringLiteral("Sample \u00E9"));
    const PassedText yes(QStringLiteral("Yes"));
    const PassedText no(QStringLiteral("No"));
    const hopbox_text buttons[3] = {yes.Get(), no.Get(), {nullptr, 0}};
    for (const int32_t button : {1, 2}) {
        int32_t pressed = 0;
        mReport.Expect(
            mAdaptor.answer_alert(mAdaptor.host, button) == HOPBOX_OK &&
                mHost.Call(&Table::show_alert, &text.Get(), &buttons[0], 1, 2, &pressed) == HOPBOX_OK &&
                pressed == button,
            "show_alert", QStringLiteral("%1 when the user presses this button").arg(button));
    }
}

bool ApplicationChecks::HasMenus() const
{
    const Table& table = mHost.GetTable();
    int32_t isKnown = 0;
    return table.add_menu_item != nullptr &&
           mHost.Call(&Table::is_action_known, int32_t(HOPBOX_ACTION_DOCUMENT), &isKnown) !=
               HOPBOX_UNSUPPORTED;
}

// A host without books has no menu for the book's.
bool ApplicationChecks::HasMenuOf(int action) const
{
    return action != HOPBOX_ACTION_BOOK || mHost.GetTable().get_active_book != nullptr;
}

// 0 or 1; another number when it can't be told.
int ApplicationChecks::IsActionKnown(int action) const
{
    int32_t isKnown = -1;
    return mHost.Call(&Table::is_action_known, int32_t(action), &isKnown) == HOPBOX_OK ? isKnown : -1;
}

// What the plug-in adds when it starts, with one more look after each step.
void ApplicationChecks::CheckActions()
{
    if (!HasMenus()) {
        mReport.Lack("is_action_known", QStringLiteral("the host makes its menu entries itself"));
        return;
    }
    constexpr int cNoAction = 4711;
    const struct
    {
        int32_t action;
        const char* area;
        const char* menu;
        double position;
    } entries[] = {{HOPBOX_ACTION_DOCUMENT, "KBSCE File menu", "Main:&File", 1301.0},
                   {HOPBOX_ACTION_BOOK, "KBSCE Palette Menus: Book: ", "BookPanelPopup", 1101.0}};
    for (const auto& entry : entries) {
        const PassedText area(QString::fromLatin1(entry.area));
        const PassedText menu(QString::fromLatin1(entry.menu));
        if (!HasMenuOf(entry.action) || IsActionKnown(entry.action) == 1)
            continue;  // known from an earlier session
        mReport.Expect(IsActionKnown(entry.action) == 0, "is_action_known",
                       QStringLiteral("0 for an action that was not added"));
        if (mHost.GetTable().add_action != nullptr)
            mReport.Expect(mHost.Call(&Table::add_action, entry.action, &area.Get()) == HOPBOX_OK,
                           "add_action", QStringLiteral("an action of the plug-in is taken"));
        mReport.Expect(
            mHost.Call(&Table::add_menu_item, entry.action, &menu.Get(), entry.position) == HOPBOX_OK,
            "add_menu_item", QStringLiteral("\"%1\" takes an entry").arg(QLatin1String(entry.menu)));
    }
    CheckStarted();
    mReport.Expect(IsActionKnown(cNoAction) == 0, "is_action_known",
                   QStringLiteral("0 for an action that there is not"));
}

void ApplicationChecks::CheckStarted()
{
    if (!HasMenus())
        return;
    for (const int32_t action : {HOPBOX_ACTION_DOCUMENT, HOPBOX_ACTION_BOOK})
        mReport.Expect(!HasMenuOf(action) || IsActionKnown(action) == 1, "is_action_known",
                       QStringLiteral("1 for action %1, which was added").arg(action));
}
