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
    GetFileCopy,                   //
    GetFolderCopyAcrossVolumes,    //
    GetFolderRenameAcrossVolumes,  //
    GetArchiveCreation,            //
    GetArchiveAddition,            //
    GetExtraction,                 //
    GetPostAndAccept,              //
    GetCopyOfAcceptedJob,          //
    GetDocumentChange,             //
    GetExport,                     //
};
}  // namespace

TEST_P(Faults, EveryFailingCallLeavesTheOldOrTheNewAndIsTold)
{
    RunFaultScenario(GetParam()());
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Faults, testing::ValuesIn(cScenarios),
                         [](const auto& each) { return std::string(each.param().name); });

// What no failing call shows: that the calls are there, and in this order.
namespace
{
// Whether a run flushes what it has written before that gets its name, which the pattern knows.
bool FlushesBeforeRename(const QStringList& calls, const char* target, int* renamed)
{
    *renamed = calls.indexOf(
        QRegularExpression(QStringLiteral("rename .*/") + QLatin1String(target) + QLatin1Char('$')));
    const int written = calls.lastIndexOf(QRegularExpression(QStringLiteral("write .*")), *renamed);
    return written >= 0 &&
           calls.mid(written, *renamed - written).join(QLatin1Char('|')).contains(QLatin1String("|flush "));
}
}  // namespace

TEST(DurableFile, IsFlushedBeforeItTakesItsPlaceAndItsFolderAfterwards)
{
    const QStringList calls = ListCalls(GetSettingsFlush());
    int renamed = -1;
    EXPECT_TRUE(FlushesBeforeRename(calls, "a\\.prefs", &renamed));
    EXPECT_GT(calls.lastIndexOf(QRegularExpression(QStringLiteral("flush ((?!a\\.prefs).)*$"))), renamed);
}

TEST(CopiedFile, IsFlushedBeforeItTakesItsPlace)
{
    int renamed = -1;
    EXPECT_TRUE(FlushesBeforeRename(ListCalls(GetFileCopy()), "b", &renamed));
}
