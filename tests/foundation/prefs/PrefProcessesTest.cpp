#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/Sandbox.h"
#include "tests/support/SecondUser.h"
#include "tests/support/TestFiles.h"

#include <QDir>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace
{
constexpr int cEntries = 60;

// Puts the files into memory, where the system has a folder there: a killed process is the same on every
// disk, and the disk's own flushing would take most of the time.
bool UseMemory()
{
    const QDir memory(QStringLiteral("/dev/shm"));
    const QByteArray path = QDir::toNativeSeparators(memory.absolutePath()).toLocal8Bit();
    return memory.exists() && qputenv("TMPDIR", path) && qputenv("TMP", path);
}

const bool cIsInMemory = UseMemory();

std::unique_ptr<GPrefFileModule> Open(const QString& kind, const QString& path)
{
    if (kind == QLatin1String("shared"))
        return std::make_unique<GPrefSharedFileModule>(GPathName(path), GEncoding::GetUTF16());
    return std::make_unique<GPrefFileModule>(GPathName(path), GEncoding::GetUTF16());
}

// Gives every entry the same value: a file that holds two values, or not all entries, is half a file.
void Fill(GPrefModule& module, int round)
{
    for (int i = 0; i < cEntries; ++i)
        module.Set("G" + QByteArray::number(i % 3), QByteArray::number(i),
                   QString::number(round).repeated(1 + round % 40));
}

bool IsWhole(const GPrefModule& module)
{
    const GString& first = module.Get("G0", "0");
    for (int i = 0; i < cEntries; ++i) {
        if (module.Get("G" + QByteArray::number(i % 3), QByteArray::number(i)) != first)
            return false;
    }
    return !first.isEmpty();
}

// Flushes; gives 0, or the last two digits of the code of what it raised.
int TryToFlush(GPrefModule& module)
{
    try {
        module.FlushPrefs();
        return 0;
    } catch (const GException& error) {
        return error.GetCode() % 100;
    }
}
}  // namespace

CHILD_ROLE(FlushForEver)
{
    const auto module = Open(arguments.at(0), arguments.at(1));
    for (int round = 1;; ++round) {
        Fill(*module, round);
        module->FlushPrefs();
        if (round == 1)
            SayToParent("flushing");
    }
}

CHILD_ROLE(ReadWholeFiles)
{
    const auto module = Open(arguments.at(0), arguments.at(1));
    for (int i = 0; i < 300; ++i) {
        module->Refresh();
        if (!IsWhole(*module))
            return 1;
    }
    return 0;
}

CHILD_ROLE(CountUnderLock)
{
    GPrefSharedFileModule module(GPathName(arguments.at(0)), GEncoding::GetUTF16());
    for (int i = 0; i < 200; ++i) {
        module.ChangeUnderLock([&](GPrefModule& current) {
            for (const QByteArray& key : {QByteArrayLiteral("all"), arguments.at(1).toLatin1()})
                current.Set("count", key, QString::number(current.Get("count", key).toInt() + 1));
        });
    }
    return 0;
}

CHILD_ROLE(FlushAsSecondUser)
{
    const auto module = Open(arguments.at(0), arguments.at(1));
    if (!BecomeSecondUser())
        return 1;
    Fill(*module, 2);
    return TryToFlush(*module);
}

CHILD_ROLE(FlushToFullDisk)
{
    const QString path = arguments.at(1) + QStringLiteral("/a.uprefs");
    if (!MountSmallDisk(arguments.at(1), 64 * 1024))
        return 1;
    const auto module = Open(arguments.at(0), path);
    Fill(*module, 1);
    if (TryToFlush(*module) != 0)
        return 2;
    const QByteArray before = ReadFile(path);
    module->Set("G0", "large", QString(100000, QLatin1Char('x')));
    const int code = TryToFlush(*module);
    const QStringList names = QDir(arguments.at(1)).entryList({QStringLiteral("*.new")});
    const bool isUnchanged = ReadFile(path) == before && names.isEmpty() && module->IsDirty();
    return isUnchanged ? code : 3;
}

// Lets the write fail at each size that the file goes through.
CHILD_ROLE(FlushWithinLimits)
{
    const QString path = arguments.at(0);
    const auto module = Open(QStringLiteral("plain"), path);
    Fill(*module, 1);
    module->Set("G0", "large", QString(200000, QLatin1Char('x')));
    for (int limit = 300000; limit >= 0; limit -= 60000) {
        if (!LimitFileSize(limit))
            return 1;
        if (TryToFlush(*module) != GErrorCode::cFile % 100 || !module->IsDirty())
            return 3;
    }
    return 0;
}

class KilledWriter : public testing::TestWithParam<const char*>
{
};

TEST_P(KilledWriter, LeavesTheOldFileOrTheNewOne)
{
    const Sandbox sandbox;
    const QString kind = QString::fromLatin1(GetParam());
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    std::mt19937 random(20260301);
    std::uniform_int_distribution<int> microseconds(0, 4000);
    for (int kill = 0; kill < 100; ++kill) {
        ChildProcess writer(QStringLiteral("FlushForEver"), {kind, path});
        ASSERT_EQ(writer.ReadLine(), "flushing");
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        writer.Kill();
        ASSERT_TRUE(IsWhole(*Open(kind, path))) << "after kill " << kill;
        const QStringList left =
            QDir(sandbox.GetPath()).entryList({QStringLiteral("a.uprefs?*.new")}, QDir::Files);
        EXPECT_LE(left.size(), 1) << "The next writer removes what a killed one left.";
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, KilledWriter, testing::Values("plain", "shared"));

TEST(SharedPreferences, ReadersNeverSeeHalfAFile)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    ChildProcess writer(QStringLiteral("FlushForEver"), {QStringLiteral("shared"), path});
    ASSERT_EQ(writer.ReadLine(), "flushing");
    ChildProcess locked(QStringLiteral("ReadWholeFiles"), {QStringLiteral("shared"), path});
    ChildProcess unlocked(QStringLiteral("ReadWholeFiles"), {QStringLiteral("plain"), path});
    EXPECT_EQ(unlocked.WaitForExit(), 0);
    EXPECT_EQ(locked.WaitForExit(), 0);
}

TEST(SharedPreferences, EightProcessesThatChangeUnderLockLoseNothing)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (int i = 0; i < 8; ++i)
        processes.push_back(std::make_unique<ChildProcess>(QStringLiteral("CountUnderLock"),
                                                           QStringList{path, QString::number(i)}));
    for (const auto& process : processes)
        EXPECT_EQ(process->WaitForExit(), 0);
    const GPrefFileModule module(GPathName(path), GEncoding::GetUTF16());
    EXPECT_EQ(module.Get("count", "all"), QStringLiteral("1600"));
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(module.Get("count", QByteArray::number(i)), QStringLiteral("200"));
}

TEST(FailedFlush, WithoutTheRightToWriteTheOldFileStays)
{
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "There is no second user to try with.";
    const struct
    {
        const char* kind;
        int folderRights, fileRights;
        int32_t code;
    } cases[] = {{"plain", 0x7755, 0x6666, GErrorCode::cFile},
                 {"plain", 0x7777, 0x4444, GErrorCode::cFile},
                 {"shared", 0x7755, 0x6666, GErrorCode::cLockFile}};
    for (const auto& test : cases) {
        const Sandbox sandbox;
        const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
        const auto module = Open(QString::fromLatin1(test.kind), path);
        Fill(*module, 1);
        module->FlushPrefs();
        const QByteArray before = ReadFile(path);
        QFile::setPermissions(sandbox.GetPath(), QFileDevice::Permissions(test.folderRights));
        QFile::setPermissions(path, QFileDevice::Permissions(test.fileRights));
        ChildProcess child(QStringLiteral("FlushAsSecondUser"), {QString::fromLatin1(test.kind), path});
        EXPECT_EQ(child.WaitForExit(), test.code % 100);
        EXPECT_EQ(ReadFile(path), before);
    }
}

TEST(FailedFlush, OnAFullDiskTheOldFileStays)
{
    const Sandbox sandbox;
    for (const char* kind : {"plain", "shared"}) {
        ChildProcess child(QStringLiteral("FlushToFullDisk"), {QString::fromLatin1(kind), sandbox.GetPath()});
        const int result = child.WaitForExit();
        if (result == 1)
            GTEST_SKIP() << "No small disk can be mounted here.";
        EXPECT_EQ(result, GErrorCode::cFile % 100);
    }
}

TEST(FailedFlush, AtWhateverByteTheDiskFailsTheOldFileStays)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    const auto module = Open(QStringLiteral("plain"), path);
    Fill(*module, 1);
    module->FlushPrefs();
    const QByteArray before = ReadFile(path);
    ChildProcess child(QStringLiteral("FlushWithinLimits"), {path});
    const int result = child.WaitForExit();
    if (result == 1)
        GTEST_SKIP() << "The system limits no file here.";
    EXPECT_EQ(result, 0);
    EXPECT_EQ(ReadFile(path), before);
    EXPECT_EQ(QDir(sandbox.GetPath()).entryList(QDir::Files), QStringList{QStringLiteral("a.uprefs")});
}
