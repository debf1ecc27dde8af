#include "plugin/shell/GIDCSPStartupShutdown.h"
#include "tests/support/fake_host/FakeHost.h"

#include <gtest/gtest.h>

TEST(Startup, AddsEachActionWithItsMenuEntryOnce)
{
    FakeHost host;
    GIDCSPStartupShutdown service;
    service.Startup();
    service.Startup();
    const struct
    {
        ActionID action;
        const char* area;
        const char* menu;
        double position;
    } cases[] = {{1674244, "KBSCE File menu", "Main:&File", 1301.0},
                 {1674246, "KBSCE Palette Menus: Book: ", "BookPanelPopup", 1101.0}};
    ASSERT_EQ(host.actions.size(), 2U);
    ASSERT_EQ(host.menuItems.size(), 2U);
    for (size_t at = 0; at < 2; ++at) {
        const FakeAction& action = host.actions[at];
        EXPECT_EQ(action.owner, 1674240);
        EXPECT_EQ(action.action, cases[at].action);
        EXPECT_EQ(action.name, QString());
        EXPECT_EQ(action.area, QString::fromLatin1(cases[at].area));
        EXPECT_EQ(action.flags.type, 0);
        EXPECT_EQ(action.flags.enabling, 1);
        EXPECT_EQ(action.flags.selection, 0);
        EXPECT_EQ(action.flags.shortcutEditor, 1);
        EXPECT_EQ(host.menuItems[at].action, cases[at].action);
        EXPECT_EQ(host.menuItems[at].path, QString::fromLatin1(cases[at].menu));
        EXPECT_EQ(host.menuItems[at].position, cases[at].position);
    }
    EXPECT_EQ(host.GetUnreleased(), QStringList());
}

TEST(Startup, WithoutOneOfTheManagersNothingIsAdded)
{
    for (const HostOperation operation :
         {HostOperation::QuerySession, HostOperation::QueryApplication, HostOperation::QueryActionManager,
          HostOperation::QueryMenuManager}) {
        FakeHost host;
        host.Make(operation, HostAnswer::Absent);
        GIDCSPStartupShutdown().Startup();
        EXPECT_EQ(host.actions.size() + host.menuItems.size(), 0U) << GetName(operation).toStdString();
        EXPECT_EQ(host.GetUnreleased(), QStringList()) << GetName(operation).toStdString();
    }
}
