#include "plugin/shell/GIDCSPActionComponent.h"

#include "FakeStateList.h"
#include "export/GCPTSaveAsTool.h"
#include "foundation/core/GUnitSupport.h"
#include "plugin/shell/GIDCSPStartupShutdown.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Test.h"
#include "tests/support/fake_host/FakeHost.h"
#include "widgets/GCUSModal.h"

#include <QDialog>
#include <QTest>
#include <QTimer>

#include <stdexcept>

static constexpr ActionID cAbout = 1674240;
static constexpr ActionID cDocument = 1674244;
static constexpr ActionID cBook = 1674246;

class ActionComponent : public testing::Test
{
protected:
    ~ActionComponent() override { EXPECT_EQ(host.GetUnreleased(), QStringList()); }

    // A component whose dialog is a function of the test's.
    void Start(GIDCSPActionComponent::DialogRunner runDialog)
    {
        component = std::make_unique<GIDCSPActionComponent>(std::move(runDialog));
        GUserMessage::SetInstance(std::make_unique<AlertRecorder>(errors));
    }

    Sandbox sandbox;
    FakeHost host;
    QStringList errors;
    std::unique_ptr<GIDCSPActionComponent> component;
};

TEST_F(ActionComponent, DispatchesByActionID)
{
    QList<bool> offersPageRange;  // of each dialog
    Start([&](const GString& title, GCPTSaveAsTool& tool) {
        EXPECT_EQ(title, "Export to Hopbox"_q);
        for (const int32_t option : {0, 1, 2, 3, 4})
            EXPECT_TRUE(tool.GetOption(static_cast<DialogOption>(option))) << option;
        offersPageRange.append(tool.GetOption(DialogOption::cPageRange));
    });
    component->DoAction(nullptr, cDocument, nullptr);
    component->DoAction(nullptr, cBook, nullptr);
    component->DoAction(nullptr, 4711, nullptr);
    EXPECT_EQ(offersPageRange, (QList<bool>{true, false}));
    EXPECT_TRUE(host.alerts.isEmpty());
    component->DoAction(nullptr, cAbout, nullptr);
    ASSERT_EQ(host.alerts.size(), 1);
    EXPECT_TRUE(host.alerts.front().contains("Hopbox 18"_q));
    EXPECT_TRUE(host.alerts.front().endsWith("|OK"_q));
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ActionComponent, AChoiceWhileADialogIsOpenBringsItToTheFront)
{
    int dialogs = 0;
    Start([&](const GString&, GCPTSaveAsTool&) {
        ++dialogs;
        QDialog dialog;
        QTimer::singleShot(0, &dialog, [&] {
            for (const ActionID action : {cDocument, cBook, cAbout}) {
                dialog.showMinimized();
                component->DoAction(nullptr, action, nullptr);
                EXPECT_FALSE(dialog.isMinimized()) << action;
                EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.isActiveWindow(); })) << action;
            }
            dialog.reject();
        });
        dialog.exec();
        // Without a window of ours, as while a command runs, there is nothing to bring.
        component->DoAction(nullptr, cBook, nullptr);
        throw std::runtime_error("Failed");
    });
    for (const int expected : {1, 2}) {
        component->DoAction(nullptr, cDocument, nullptr);
        EXPECT_EQ(dialogs, expected);
    }
    EXPECT_EQ(host.alerts.size(), 0);
}

TEST_F(ActionComponent, WhatGoesWrongInADialogIsShown)
{
    Start({});
    component->DoAction(nullptr, cDocument, nullptr);
    EXPECT_EQ(errors.size(), 1);
    Start([](const GString&, GCPTSaveAsTool&) { throw std::runtime_error("No memory"); });
    component->DoAction(nullptr, cDocument, nullptr);
    ASSERT_EQ(errors.size(), 2);
    EXPECT_EQ(errors.back(), "Export to Hopbox error|No memory"_q);
}

TEST_F(ActionComponent, TheDefaultUnitIsTheHosts)
{
    Start([](const GString&, GCPTSaveAsTool&) {});
    const std::pair<ClassID, int32_t> cases[] = {{4609, 0}, {4610, 1}, {4611, 2}, {4612, 2},
                                                 {4613, 4}, {4614, 3}, {4608, 0}, {4615, 0}};
    for (const auto& [unit, code] : cases) {
        host.unit = unit;
        component->DoAction(nullptr, cDocument, nullptr);
        EXPECT_EQ(GUnitSupport::GetDefaultUnitCode(), code) << unit;
    }
    host.unit = 4614;
    host.Make(HostOperation::QueryUnitPreferences, HostAnswer::Absent);
    component->DoAction(nullptr, cDocument, nullptr);
    EXPECT_EQ(GUnitSupport::GetDefaultUnitCode(), 0);
}

TEST_F(ActionComponent, AnEntryIsEnabledWhenThereIsSomethingToExport)
{
    Start({});
    const auto getStates = [&] {
        FakeStateList list({cAbout, cDocument, cBook, 4711});
        component->UpdateActionStates(nullptr, list);
        list.set.sort();
        return list.set.join(QLatin1Char('|')).toStdString();
    };
    const auto make = [](const char* document, const char* book) {
        return std::string("1674244 by Alt+Shift+E|1674244 called Export to Hopbox...|1674244 ") + document +
               "|1674246 by Alt+Shift+B|1674246 called Export to Hopbox...|1674246 " + book;
    };
    EXPECT_EQ(getStates(), make("off", "off"));
    host.documents.push_back({});
    host.books.push_back({});
    EXPECT_EQ(getStates(), make("on", "off"));
    host.books.front().documentPaths = "/a.indd"_list;
    EXPECT_EQ(getStates(), make("on", "on"));
    for (const HostOperation absent :
         {HostOperation::QueryLayoutUtils, HostOperation::QueryFrontDocument, HostOperation::QuerySession,
          HostOperation::QueryBookManager, HostOperation::QueryActiveBook, HostOperation::QueryBookContent}) {
        const bool isDocuments =
            absent == HostOperation::QueryLayoutUtils || absent == HostOperation::QueryFrontDocument;
        host.Make(absent, HostAnswer::Absent);
        EXPECT_EQ(getStates(), isDocuments ? make("off", "on") : make("on", "off"));
        host.Make(absent, HostAnswer::Works);
    }
}

TEST_F(ActionComponent, TheHostRestsWhileAWindowIsModal)
{
    Start({});
    {
        const GCUSModal::Scope modal;
        EXPECT_EQ(host.modalTokens.size(), 1U);
    }
    EXPECT_EQ(host.modalTokens.size(), 0U);
    component.reset();
    const GCUSModal::Scope modal;
    EXPECT_EQ(host.modalTokens.size(), 0U);
}

TEST_F(ActionComponent, NoOperationOfTheHostIsTakenForGranted)
{
    Start([](const GString&, GCPTSaveAsTool&) { const GCUSModal::Scope modal; });
    host.documents.push_back({});
    for (const HostOperationInfo& info : GetHostOperations()) {
        host.Make(info.operation, info.canFail ? HostAnswer::Fails : HostAnswer::Absent);
        host.actions.clear();
        GIDCSPStartupShutdown().Startup();
        FakeStateList list({cAbout, cDocument, cBook});
        component->UpdateActionStates(nullptr, list);
        for (const ActionID action : {cAbout, cDocument, cBook})
            component->DoAction(nullptr, action, nullptr);
        EXPECT_EQ(host.GetUnreleased(), QStringList()) << info.name;
        EXPECT_EQ(host.modalTokens.size(), 0U) << info.name;
        host.Make(info.operation, HostAnswer::Works);
    }
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ActionComponent, NothingThatTheHostRaisesGetsBackToIt)
{
    int dialogs = 0;
    Start([&](const GString&, GCPTSaveAsTool&) {
        const GCUSModal::Scope modal;
        ++dialogs;
    });
    host.documents.push_back({});
    host.books.push_back({});
    int call = 1;
    for (bool isReached = true; isReached; ++call) {
        host.actions.clear();
        FakeStateList list({cAbout, cDocument, cBook});
        host.DisturbCall(call, HostAnswer::Raises);
        EXPECT_NO_THROW({
            GIDCSPStartupShutdown().Startup();
            component->UpdateActionStates(nullptr, list);
            for (const ActionID action : {cAbout, cDocument, cBook})
                component->DoAction(nullptr, action, nullptr);
        }) << call;
        isReached = host.IsDisturbed();
        EXPECT_LE(errors.size(), isReached ? 1 : 0) << call;
        EXPECT_EQ(list.set.filter(" o"_q).size(), 2) << call;  // each entry is on or off
        errors.clear();
        host.modalTokens.clear();
    }
    EXPECT_GT(call, 20);
    // The unit is asked for in two calls; whatever else is raised, each dialog opens.
    EXPECT_EQ(dialogs, 2 * (call - 1) - 4);
    host.DisturbCall(0, HostAnswer::Works);
    const GCUSModal::Scope modal;  // the depth is as it was
    EXPECT_EQ(host.modalTokens.size(), 1U);
}
