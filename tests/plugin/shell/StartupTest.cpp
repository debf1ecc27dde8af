#include "plugin/shell/GIDCSPStartupShutdown.h"
#include "tests/support/Texts.h"
#include "tests/support/fake_host/FakeHost.h"

#include <gtest/gtest.h>

TEST(Startup, AddsEachActionWithItsMenuEntryOnce)
{
    FakeHost host;
    GIDCSPStartupShutdown service;
    service.Startup();
    service.Startup();
    QStringList added;
    for (const FakeAction& action : host.actions)
        added += "%1 of %2|%3|%4|%5%6%7%8"_q.arg(action.action)
                     .arg(action.owner)
                     .arg(action.name, action.area)
                     .arg(action.flags.type)
                     .arg(action.flags.enabling)
                     .arg(action.flags.selection)
                     .arg(action.flags.shortcutEditor);
    for (const FakeMenuItem& item : host.menuItems)
        added += "%1 at %2|%3"_q.arg(item.action).arg(item.path).arg(item.position);
    EXPECT_EQ(added.join(QLatin1Char('\n')).toStdString(),
              "1674244 of 1674240||KBSCE File menu|0101\n"
              "1674246 of 1674240||KBSCE Palette Menus: Book: |0101\n"
              "1674244 at Main:&File|1301\n"
              "1674246 at BookPanelPopup|1101");
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
