#include "Scenarios.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace
{
class Faults : public testing::TestWithParam<FaultScenario (*)()>
{
};

FaultScenario (*const cScenarios[])() = {
    GetRegistryChange,             //
    GetDamagedRegistryChange,      //
    GetSettingsFlush,              //
    GetProjectSettings,            //
    GetFolderCopyAcrossVolumes,    //
    GetFolderRenameAcrossVolumes,  //
    GetArchiveCreation,            //
    GetArchiveAddition,            //
    GetExtraction,                 //
    GetPostAndAccept,              //
    GetCopyOfAcceptedJob,          //
    GetDocumentChange,             //
};
}  // namespace

TEST_P(Faults, EveryFailingCallLeavesTheOldOrTheNewAndIsTold)
{
    RunFaultScenario(GetParam()());
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Faults, testing::ValuesIn(cScenarios),
                         [](const auto& each) { return std::string(each.param().name); });

// What no failing call shows: that the calls are there, and in this order.
TEST(DurableFile, IsFlushedBeforeItTakesItsPlaceAndItsFolderAfterwards)
{
    const QStringList calls = ListCalls(GetSettingsFlush());
    const int replaced = calls.indexOf(QRegularExpression(QStringLiteral("rename .*/a\\.prefs$")));
    const int written = calls.lastIndexOf(QRegularExpression(QStringLiteral("write .*")), replaced);
    ASSERT_GE(written, 0);
    EXPECT_TRUE(
        calls.mid(written, replaced - written).join(QLatin1Char('|')).contains(QLatin1String("|flush ")));
    EXPECT_GT(calls.lastIndexOf(QRegularExpression(QStringLiteral("flush ((?!a\\.prefs).)*$"))), replaced);
}
