#include "Scenarios.h"
#include "foundation/system/GOwnedFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"
#include "tests/support/faults/FaultCalls.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
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
    GetListOfTemporaries,          //
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

// Where no file without a name can be made, it has one from the start.
TEST(ExtractedFile, IsOwnedWhileItHasAPassingName)
{
    const FaultScenario scenario = GetExtraction();
    const Sandbox sandbox;
    const QString root = sandbox.GetPath();
    QDir().mkpath(root);
    scenario.prepare(root);
    const int nameless =
        ListCalls(scenario).indexOf(QRegularExpression(QStringLiteral("open .*/out/.*\\.$"))) + 1;
    ASSERT_GT(nameless, 0);
    qputenv("LD_PRELOAD", qPrintable(QCoreApplication::applicationDirPath() + "/preloaded_faults.so"_q));
    qputenv(cFaultRoot, qPrintable(root));
    qputenv(cFaultReport, qPrintable(root + "/report"_q));
    qputenv(cFaultNumber, QByteArray::number(nameless));
    ChildProcess child("ExtractInTwoSteps"_q, {root});
    qunsetenv("LD_PRELOAD");
    ASSERT_EQ(child.ReadLine(), "half");
    QDirIterator parts(root + "/out"_q, {".hopbox-*.part"_q}, QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    ASSERT_TRUE(parts.hasNext()) << ReadFile(root + "/report"_q).toStdString();
    const GPathName part(parts.next());
    EXPECT_FALSE(GOwnedFile::RemoveUnowned(part));
    child.Kill();
    EXPECT_TRUE(GOwnedFile::RemoveUnowned(part));
}

TEST(CopiedFile, IsFlushedBeforeItTakesItsPlace)
{
    int renamed = -1;
    EXPECT_TRUE(FlushesBeforeRename(ListCalls(GetFileCopy()), "b", &renamed));
}
