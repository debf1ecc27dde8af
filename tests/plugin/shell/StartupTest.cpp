#include "plugin/shell/GIDCSPStartupShutdown.h"

#include "plugin/host/HostCalls.h"
#include "tests/support/Test.h"
#include "tests/support/fake_host/FakeHost.h"

extern "C" IPlugIn* GetPlugIn();

TEST(Startup, AddsEachActionWithItsMenuEntryOnce)
{
    FakeHost host;
    GIDCSPStartupShutdown service;
    service.Startup();
    service.Startup();
    const std::multimap<ActionID, QString> actions = {
        {1674244, "|KBSCE File menu|1674240|0|1|0|1"_q},
        {1674246, "|KBSCE Palette Menus: Book: |1674240|0|1|0|1"_q}};
    const std::multimap<ActionID, QString> menuItems = {{1674244, "Main:&File|1301"_q},
                                                        {1674246, "BookPanelPopup|1101"_q}};
    EXPECT_EQ(host.actions, actions);
    EXPECT_EQ(host.menuItems, menuItems);
    EXPECT_EQ(host.GetUnreleased(), QStringList());
}

// The way of an adaptor that is linked with the plug-in.
TEST(Startup, ALinkedAdaptorHasThePlugInByTheEntryOfTheLibrary)
{
    FakeHost host;
    HostServices::Set(nullptr);
    PMString error;
    ASSERT_TRUE(GetPlugIn()->Load(&host, error)) << error.GetString().toStdString();
    GetPlugIn()->GetStartupShutdownService()->Startup();
    EXPECT_EQ(host.actions.size(), 2U);
    EXPECT_TRUE(GetPlugIn()->Unload());
}
