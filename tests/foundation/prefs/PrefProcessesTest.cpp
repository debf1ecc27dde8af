#include "foundation/core/GErrorCodes.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/SecondUser.h"
#include "tests/support/Test.h"

#include <random>
#include <thread>

static constexpr int cEntries = 60;

// Puts the files into memory, where the system has a folder there: a killed process is the same on every
// disk, and the disk's own flushing would take most of the time.
static bool UseMemory()
{
    const QDir memory("/dev/shm"_q);
    const QByteArray path = QDir::toNativeSeparators(memory.absolutePath()).toLocal8Bit();
    return memory.exists() && qputenv("TMPDIR", path) && qputenv("TMP", path);
}

static const bool cIsInMemory = UseMemory();

static std::unique_ptr<GPrefFileModule> Open(const QString& kind, const QString& path)
{
    const GPathName name(path);
    return kind == "shared"_q ? std::make_unique<GPrefSharedFileModule>(name, GEncoding::GetUTF16())
                              : std::make_unique<GPrefFileModule>(name, GEncoding::GetUTF16());
}

// Gives every entry the same value: a file that holds two values, or not all entries, is half a file.
static void Fill(GPrefModule& module, int round)
{
    for (int i = 0; i < cEntries; ++i)
        module.Set("G" + QByteArray::number(i % 3), QByteArray::number(i),
                   QString::number(round).repeated(1 + round % 40));
}

static bool IsWhole(const GPrefModule& module)
{
    const GString& first = module.Get("G0", "0");
    for (int i = 0; i < cEntries; ++i) {
        if (module.Get("G" + QByteArray::number(i % 3), QByteArray::number(i)) != first)
            return false;
    }
    return !first.isEmpty();
}

// Flushes; gives 0, or the last two digits of the code of what it raised.
static int TryToFlush(GPrefModule& module)
{
    return GetErrorCode([&] { module.FlushPrefs(); }) % 100;
}

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
    const QString path = arguments.at(1) + "/a.uprefs"_q;
    if (!MountSmallDisk(arguments.at(1), 64 * 1024))
        return 1;
    const auto module = Open(arguments.at(0), path);
    Fill(*module, 1);
    if (TryToFlush(*module) != 0)
        return 2;
    const QByteArray before = ReadFile(path);
    for (const int length : {30000, 100000}) {  // too long for the last bytes, or for the first
        module->Set("G0", "large", QString(length, QLatin1Char('x')));
        const bool isRaised = TryToFlush(*module) == GErrorCode::cFile % 100;
        const QStringList left = QDir(arguments.at(1)).entryList({"*.new"_q});
        if (!isRaised || ReadFile(path) != before || !left.isEmpty() || !module->IsDirty())
            return 3;
    }
    return 0;
}

// There is room for the copies that are there, but not for another one.
CHILD_ROLE(KeepDamagedOnFullDisk)
{
    const QString path = arguments.at(0) + "/a.uprefs"_q;
    if (!MountSmallDisk(arguments.at(0), 64 * 1024))
        return 1;
    for (const char* copy : {"", ".1", ".2"})
        WriteFile(path + ".damaged"_q + QLatin1String(copy), copy);
    if (!WriteFile(path, QByteArray(30000, 'x')) ||
        !WriteFile(arguments.at(0) + "/full"_q, QByteArray(12000, 'x')))
        return 2;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const auto module = Open("shared"_q, path);
        module->Set("G", "k", "v"_q);
        if (TryToFlush(*module) == 0)
            return 3;
        for (const char* copy : {"", ".1", ".2"}) {
            if (ReadFile(path + ".damaged"_q + QLatin1String(copy)) != copy)
                return 4;
        }
    }
    return 0;
}

TEST(DamagedFile, FullDiskCostsNoOlderCopy)
{
    const Sandbox sandbox;
    const QString folder = sandbox.GetPath("disk"_q);
    ASSERT_TRUE(QDir().mkpath(folder));
    ChildProcess child("KeepDamagedOnFullDisk"_q, {folder});
    const int status = child.WaitForExit();
    if (status == 1)
        GTEST_SKIP() << "Nothing can be mounted here.";
    EXPECT_EQ(status, 0);
}

TEST(KilledWriter, LeavesTheOldFileOrTheNewOne)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.uprefs"_q);
    std::mt19937 random(20260301);
    std::uniform_int_distribution<int> microseconds(0, 4000);
    for (int kill = 0; kill < 200; ++kill) {
        const QString kind = kill % 2 == 0 ? "plain"_q : "shared"_q;
        ChildProcess writer("FlushForEver"_q, {kind, path});
        ASSERT_EQ(writer.ReadLine(), "flushing");
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        writer.Kill();
        ASSERT_TRUE(IsWhole(*Open(kind, path))) << "after kill " << kill;
        const QStringList left = QDir(sandbox.GetPath()).entryList({"a.uprefs?*.new"_q});
        EXPECT_LE(left.size(), 1) << "The next writer removes what a killed one left.";
    }
}

TEST(SharedPreferences, ReadersNeverSeeHalfAFile)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.uprefs"_q);
    ChildProcess writer("FlushForEver"_q, {"shared"_q, path});
    ASSERT_EQ(writer.ReadLine(), "flushing");
    ChildProcess locked("ReadWholeFiles"_q, {"shared"_q, path});
    ChildProcess unlocked("ReadWholeFiles"_q, {"plain"_q, path});
    EXPECT_EQ(unlocked.WaitForExit(), 0);
    EXPECT_EQ(locked.WaitForExit(), 0);
}

TEST(SharedPreferences, EightProcessesThatChangeUnderLockLoseNothing)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.uprefs"_q);
    for (const auto& process : StartChildren("CountUnderLock"_q, 8, {path}))
        EXPECT_EQ(process->WaitForExit(), 0);
    const GPrefFileModule module(GPathName(path), GEncoding::GetUTF16());
    EXPECT_EQ(module.Get("count", "all"), "1600"_q);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(module.Get("count", QByteArray::number(i)), "200"_q);
}

TEST(FailedFlush, WithoutTheRightToWriteTheOldFileStays)
{
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "There is no second user to try with.";
    const std::tuple<QString, int, int, int32_t> cases[] = {
        {"plain"_q, 0x7755, 0x6666, GErrorCode::cFile},
        {"plain"_q, 0x7777, 0x4444, GErrorCode::cFile},
        {"shared"_q, 0x7755, 0x6666, GErrorCode::cLockFile}};
    for (const auto& [kind, folderRights, fileRights, code] : cases) {
        const Sandbox sandbox;
        const QString path = sandbox.GetPath("a.uprefs"_q);
        WriteFile(path, "#BEGINPREFS\n#ENDPREFS\n");
        QFile::setPermissions(sandbox.GetPath(), QFileDevice::Permissions(folderRights));
        QFile::setPermissions(path, QFileDevice::Permissions(fileRights));
        ChildProcess child("FlushAsSecondUser"_q, {kind, path});
        EXPECT_EQ(child.WaitForExit(), code % 100);
        EXPECT_EQ(ReadFile(path), "#BEGINPREFS\n#ENDPREFS\n");
    }
}

TEST(FailedFlush, OnAFullDiskTheOldFileStays)
{
    const Sandbox sandbox;
    for (const char* kind : {"plain", "shared"}) {
        ChildProcess child("FlushToFullDisk"_q, {QString::fromLatin1(kind), sandbox.GetPath()});
        const int result = child.WaitForExit();
        if (result == 1)
            GTEST_SKIP() << "No small disk can be mounted here.";
        EXPECT_EQ(result, 0);
    }
}
