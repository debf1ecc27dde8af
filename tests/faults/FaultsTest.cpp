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
    GetDurableWrite,               //
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

// Of a file that has a name for a moment before it replaces another.
TEST(ExtractedFile, IsOwnedBeforeItGetsAPassingName)
{
    const QStringList calls = ListCalls(GetExtraction());
    const int named = calls.indexOf(QRegularExpression(QStringLiteral("link .*\\.hopbox-.*\\.part$")));
    const int made = calls.lastIndexOf(QRegularExpression(QStringLiteral("open .*/out/.*\\.$")), named);
    ASSERT_TRUE(made > 0 && named > made) << calls.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(calls.mid(made, named - made).join(QLatin1Char('|')).contains(QLatin1String("|lock ")));
}

namespace
{
// Where no file without a name can be made, it has one from the start, by which it must not be removed.
// The call of that pattern fails that comes last before the one of the other.
void SeeThatThePassingNameIsOwned(const FaultScenario& scenario, const char* call, const char* nextCall,
                                  const QString& role, const QString& wildcard)
{
    const Sandbox sandbox;
    const QString root = sandbox.GetPath();
    QDir().mkpath(root);
    scenario.prepare(root);
    const QStringList calls = ListCalls(scenario);
    const int next = calls.indexOf(QRegularExpression(QLatin1String(nextCall)));
    const int nameless = calls.lastIndexOf(QRegularExpression(QLatin1String(call)), next) + 1;
    ASSERT_TRUE(next > 0 && nameless > 0) << calls.join(QLatin1Char('\n')).toStdString();
    qputenv("LD_PRELOAD", qPrintable(QCoreApplication::applicationDirPath() + "/preloaded_faults.so"_q));
    qputenv(cFaultRoot, qPrintable(root));
    qputenv(cFaultReport, qPrintable(root + "/report"_q));
    qputenv(cFaultNumber, QByteArray::number(nameless));
    ChildProcess child(role, {root});
    qunsetenv("LD_PRELOAD");
    ASSERT_EQ(child.ReadLine(), "half");
    QDirIterator parts(root, {wildcard}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    ASSERT_TRUE(parts.hasNext()) << ReadFile(root + "/report"_q).toStdString();
    const GPathName part(parts.next());
    EXPECT_FALSE(GOwnedFile::RemoveUnowned(part));
    child.Kill();
    EXPECT_TRUE(GOwnedFile::RemoveUnowned(part));
}
}  // namespace

TEST(ExtractedFile, IsOwnedWhileItHasAPassingName)
{
    SeeThatThePassingNameIsOwned(GetExtraction(), "open .*/out/.*\\.$", "write .*/out/.*",
                                 "ExtractInTwoSteps"_q, ".hopbox-*.part"_q);
}

TEST(DurableFile, IsOwnedWhileItHasAPassingName)
{
    SeeThatThePassingNameIsOwned(GetDurableWrite(), "open .*", "lock .*", "WriteInTwoSteps"_q, "a.*.new"_q);
}

TEST(JobJournal, IsFlushedWhenAJobCountsAsTaken)
{
    const QStringList calls = ListCalls(GetPostAndAccept());
    const int written = calls.lastIndexOf(QRegularExpression(QStringLiteral("write .*/journal$")));
    ASSERT_GT(written, 0) << calls.join(QLatin1Char('\n')).toStdString();
    EXPECT_GT(calls.lastIndexOf(QRegularExpression(QStringLiteral("flush .*/journal$"))), written);
}

TEST(CopiedFile, IsFlushedBeforeItTakesItsPlace)
{
    int renamed = -1;
    EXPECT_TRUE(FlushesBeforeRename(ListCalls(GetFileCopy()), "b", &renamed));
}
