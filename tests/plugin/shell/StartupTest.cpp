#include "plugin/shell/GIDCSPStartupShutdown.h"
#include "tests/support/fake_host/FakeHost.h"

#include <gtest/gtest.h>

TEST(Startup, AddsTheDocumentActionWithItsMenuEntryOnce)
{
    FakeHost host;
    GIDCSPStartupShutdown service;
    service.Startup();
    service.Startup();
    ASSERT_EQ(host.actions.size(), 1U);
    const FakeAction& action = host.actions.front();
    EXPECT_EQ(action.owner, 1674240);
    EXPECT_EQ(action.action, 1674244);
    EXPECT_EQ(action.name, QString());
    EXPECT_EQ(action.area, QStringLiteral("KBSCE File menu"));
    EXPECT_EQ(action.flags.type, 0);
    EXPECT_EQ(action.flags.enabling, 1);
    EXPECT_EQ(action.flags.selection, 0);
    EXPECT_EQ(action.flags.shortcutEditor, 1);
    ASSERT_EQ(host.menuItems.size(), 1U);
    EXPECT_EQ(host.menuItems.front().action, 1674244);
    EXPECT_EQ(host.menuItems.front().path, QStringLiteral("Main:&File"));
    EXPECT_EQ(host.menuItems.front().position, 1301.0);
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
