#include "Scenarios.h"
#include "foundation/system/GOwnedFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"
#include "tests/support/faults/FaultCalls.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

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
    GetHopboxChange,               //
    GetFileCopy,                   //
    GetFileCopyToAFreeName,        //
    GetXmlSave,                    //
    GetFolderQueries,              //
    GetFolderCopyAcrossVolumes,    //
    GetFileRenameAcrossVolumes,    //
    GetFolderRenameAcrossVolumes,  //
    GetArchiveCreation,            //
    GetArchiveAddition,            //
    GetExtraction,                 //
    GetPostAndAccept,              //
    GetTakeOver,                   //
    GetCopyOfAcceptedJob,          //
    GetCopyOfAcceptedFile,         //
    GetDocumentChange,             //
    GetAnnouncement,               //
    GetExport,                     //
    GetListOfTemporaries,          //
    GetProgramStart,               //
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
// While one lives, children are started with the preloaded library, and their call of that number fails.
class Preload
{
public:
    Preload(const QString& root, int number)
    {
        Set("LD_PRELOAD", QCoreApplication::applicationDirPath() + "/preloaded_faults.so"_q);
        Set(cFaultRoot, root);
        Set(cFaultReport, root + "/report"_q);
        Set(cFaultNumber, QString::number(number));
    }
    ~Preload()
    {
        for (const char* name : mNames)
            qunsetenv(name);
    }
    Preload(const Preload&) = delete;
    Preload& operator=(const Preload&) = delete;

    void Set(const char* name, const QString& value)
    {
        qputenv(name, QFile::encodeName(value));
        mNames.push_back(name);
    }

private:
    std::vector<const char*> mNames;
};

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
    const Preload preload(root, nameless);
    ChildProcess child(role, {root});
    ASSERT_EQ(child.ReadLine(), "half");
    QDirIterator parts(root, {wildcard}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    ASSERT_TRUE(parts.hasNext()) << ReadFile(root + "/report"_q).toStdString();
    const GPathName part(parts.next());
    GOwnedFile::RemoveUnowned(part);
    EXPECT_TRUE(QFile::exists(part.GetNativePath()));
    child.Kill();
    GOwnedFile::RemoveUnowned(part);
    EXPECT_FALSE(QFile::exists(part.GetNativePath()));
}
}  // namespace

TEST(ExtractedFile, IsOwnedWhileItHasAPassingName)
{
    SeeThatThePassingNameIsOwned(GetExtraction(), "open .*/out/.*\\.$", "write .*/out/.*",
                                 "ExtractInTwoSteps"_q, ".hopbox-*.part"_q);
}

TEST(DurableFile, IsOwnedWhileItHasAPassingName)
{
    SeeThatThePassingNameIsOwned(GetDurableWrite(), "open .*", "lock .*", "WriteInTwoSteps"_q,
                                 "file.*.new"_q);
}

// Whoever is told of a failure takes the old file to be there.
TEST(DurableFile, FailsNoMoreOnceItHasTakenItsPlace)
{
    const FaultScenario scenario = GetDurableWrite();
    const QStringList calls = ListCalls(scenario);
    const int renamed = calls.indexOf(QRegularExpression("rename .*"_q));
    ASSERT_GT(renamed, 0);
    ASSERT_GT(calls.size(), renamed + 3) << calls.join(QLatin1Char('\n')).toStdString();
    for (int number = renamed + 2; number <= calls.size(); ++number) {
        const Sandbox sandbox;
        scenario.prepare(sandbox.GetPath());
        const Preload preload(sandbox.GetPath(), number);
        EXPECT_EQ(ChildProcess(scenario.arguments.first(), {sandbox.GetPath()}).WaitForExit(), 0)
            << calls.at(number - 1).toStdString();
    }
}

TEST(DeletedHopbox, IsNotSaidToBeGoneWhileAFileOfItIsThere)
{
    const FaultScenario scenario = GetHopboxDeletion();
    const QStringList calls = ListCalls(scenario);
    for (int number = 1; number <= calls.size(); ++number) {
        if (!calls.at(number - 1).contains("/Settings/Press"_q))
            continue;
        const Sandbox sandbox;
        scenario.prepare(sandbox.GetPath());
        const Preload preload(sandbox.GetPath(), number);
        QProcess process;
        process.start(GetProgramPath("hopboxctl"), scenario.arguments);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), scenario.look(sandbox.GetPath()) == "gone"_q ? 0 : 1)
            << calls.at(number - 1).toStdString();
    }
}

TEST(JobJournal, IsFlushedWhenAJobCountsAsTaken)
{
    const QStringList calls = ListCalls(GetPostAndAccept());
    const int written = calls.lastIndexOf(QRegularExpression(QStringLiteral("write .*/journal$")));
    ASSERT_GT(written, 0) << calls.join(QLatin1Char('\n')).toStdString();
    EXPECT_GT(calls.lastIndexOf(QRegularExpression(QStringLiteral("flush .*/journal$"))), written);
}

TEST(CopiedFile, IsFlushedBeforeItTakesItsPlaceAndItsFolderAfterwards)
{
    int renamed = -1;
    const QStringList calls = ListCalls(GetFileCopy());
    EXPECT_TRUE(FlushesBeforeRename(calls, "b", &renamed));
    EXPECT_GT(calls.lastIndexOf(QRegularExpression(QStringLiteral("flush .*"))), renamed);
}

// What was read of a file before its disk failed is no change of this process.
TEST(SharedSettings, AReadThatBreaksOffLeavesNothingThatTheNextChangeBringsBack)
{
    const FaultScenario scenario = GetChangeAfterABrokenRead();
    const Sandbox sandbox;
    const QString root = sandbox.GetPath();
    scenario.prepare(root);
    const QStringList calls = ListCalls(scenario);
    const QRegularExpression reading("read .*/a\\.prefs$"_q);
    const int second = calls.indexOf(reading, calls.indexOf(reading) + 1) + 1;
    ASSERT_GT(second, 1);
    const Preload preload(root, second);
    ChildProcess child(scenario.arguments.first(), {root});
    EXPECT_EQ(child.ReadLine(), "unread");
    EXPECT_EQ(child.WaitForExit(), 0);
    EXPECT_EQ(scenario.look(root), "New"_q);
}

// A list of processes that breaks off is no list of nobody.
TEST(ProcessList, IsNotTakenForEmptyWhereItCannotBeRead)
{
    const Sandbox sandbox;
    const QString report = sandbox.GetPath("report"_q);
    const auto list = [&report](int number) {
        QFile::remove(report);
        Preload preload("/proc"_q, number);
        preload.Set(cFaultReport, report);
        return ChildProcess("ListProcesses"_q, {}).WaitForExit();
    };
    WriteFile(report, "");
    ASSERT_EQ(list(0), 0);
    const QStringList calls = QString::fromUtf8(ReadFile(report)).split(QLatin1Char('\n'));
    for (const char* call : {"open /proc", "readdir /proc"}) {
        EXPECT_GE(calls.indexOf(QLatin1String(call)), 0);
        EXPECT_EQ(list(calls.lastIndexOf(QLatin1String(call)) + 1), 1) << call;
    }
}

// A loop that waits for others to be done with a file ends when nobody else is there.
TEST(Loops, EndWhenTheSystemNeverTellsWhatAFileIs)
{
    const auto getScenario = [](const QString& step) {
        FaultScenario scenario = GetSettingsFlush();
        scenario.prepare = [](const QString&) {};
        scenario.arguments = QStringList{"TakeAStep"_q, "%1"_q, step};
        return scenario;
    };
    // The new file gets a name at once where none without one can be made.
    const QStringList calls = ListCalls(getScenario("write"_q));
    const int nameless =
        calls.lastIndexOf(QRegularExpression("open .*"_q), calls.indexOf(QRegularExpression("link .*"_q))) +
        1;
    const struct
    {
        const char *step, *file;
        int firstFault;
    } steps[] = {{"lock", "a.lock", 0}, {"own", ".owner", 0}, {"write", ".new", nameless}};
    for (const auto& each : steps) {
        for (const int error : {EIO, ENOENT}) {
            SCOPED_TRACE(testing::Message() << each.step << ' ' << error);
            const Sandbox sandbox;
            const QString root = sandbox.GetPath();
            Preload preload(root, each.firstFault);
            preload.Set(cFaultLookAt, QLatin1String(each.file));
            preload.Set(cFaultLookError, QString::number(error));
            ChildProcess child("TakeAStep"_q, {root, QLatin1String(each.step)});
            EXPECT_EQ(child.WaitForExit(), 1);
            const QStringList left = QDir(root).entryList({"*.new"_q, "*.owner"_q}, QDir::Files);
            EXPECT_TRUE(error == ENOENT || left.isEmpty()) << left.size();
        }
    }
}

TEST(MovedFile, IsFlushedWithItsCompanionBeforeTheSourceGoes)
{
    FaultScenario scenario = GetFolderRenameAcrossVolumes();
    scenario.arguments.first() = "RenameFile"_q;
    scenario.look = [](const QString&) { return QString(); };
    const QStringList calls = ListCalls(scenario);
    const int removed = calls.indexOf(QRegularExpression("(rename|unlink) .*/from/sub/.*"_q));
    for (const char* copy : {"flush .*/other/b$", "flush .*/other/\\._b$"}) {
        const int flushed = calls.indexOf(QRegularExpression(QLatin1String(copy)));
        EXPECT_TRUE(flushed >= 0 && flushed < removed) << copy << calls.join(QLatin1Char('|')).toStdString();
    }
}

// Only what has reached the disk may cost the source: also the names in the folders, and nothing is passed
// over.
TEST(MovedFolder, StaysWhenItsCopyCannotBeFlushed)
{
    const FaultScenario scenario = GetFolderRenameAcrossVolumes();
    const QStringList calls = ListCalls(scenario);
    const int removed = calls.indexOf(QRegularExpression("rename .*/\\.~#~from_del.*"_q));
    int number = calls.indexOf(QRegularExpression("flush .*"_q));
    ASSERT_TRUE(number >= 0 && removed > number);
    for (const char* folder : {"other", "other/to", "other/to/sub"}) {
        const QRegularExpression flush("flush .*/%1$"_q.arg(QLatin1String(folder)));
        const int flushed = calls.indexOf(flush, number);
        EXPECT_TRUE(flushed >= 0 && flushed < removed) << folder;
    }
    for (; number < removed; ++number) {
        if (calls.at(number).startsWith("close"_q) || !calls.at(number).contains("/other"_q))
            continue;
        const Sandbox sandbox;
        QDir().mkpath(sandbox.GetPath());
        scenario.prepare(sandbox.GetPath());
        const Preload preload(sandbox.GetPath(), number + 1);
        ChildProcess child(scenario.arguments.first(), {sandbox.GetPath()});
        EXPECT_EQ(child.WaitForExit(), 1) << calls.at(number).toStdString();
        EXPECT_TRUE(QFile::exists(sandbox.GetPath("from/sub/b"_q))) << calls.at(number).toStdString();
    }
}
