#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GOwnedFile.h"
#include "foundation/system/GProcessInfo.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/SecondUser.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <atomic>
#include <chrono>

static void Write(const QString& path, const QByteArray& content)
{
    GDurableFile file((GPathName(path)));
    file.Write(content.constData(), content.size());
    file.Commit();
}

// The temporary name of a target; its end is PROCESS-START-MACHINE-RANDOM.new.
static QString MakeTemporaryName(const QString& target)
{
    const Sandbox sandbox;
    GDurableFile file((GPathName(sandbox.GetPath(target))));
    file.Prepare();
    return file.GetTemporaryPath().GetLeaf();
}

// This machine, as the names of temporary files have it.
static QString GetMachine()
{
    return MakeTemporaryName("a"_q).section(QLatin1Char('-'), 2, 2);
}

CHILD_ROLE(OwnFile)
{
    const GOwnedFile file([&] { return GPathName(arguments.at(0)); });
    SayToParent("owned");
    HearFromParent();
    return 0;
}

TEST(GDurableFile, TargetIsWholeAndAloneWhateverTheSize)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    for (const int size : {0, 1, 65535, 65536, 65537, 300000}) {
        const QByteArray content(size, 'x');
        GDurableFile file((GPathName(path)));
        file.Write(content.constData(), size / 3);
        file.Write(content.constData(), size - size / 3);
        file.Commit();
        EXPECT_EQ(ReadFile(path), content);
    }
    {
        GDurableFile dropped((GPathName(path)));
        dropped.Write("lost", 4);
    }
    EXPECT_EQ(ReadFile(path).size(), 300000);
    EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList{"a.prefs"_q});
}

// The names that it needs meanwhile find room, too; "\U0001F5A8" has four bytes.
TEST(GDurableFile, NamesOfAnyLengthAreWrittenAndReplaced)
{
    const QString printer = QString::fromUtf8("\U0001F5A8");
    for (const QString& name : {QString(250, QLatin1Char('a')), QString(190, QLatin1Char('a')) + ".pdf"_q,
                                "x"_q + printer.repeated(60)}) {
        const Sandbox sandbox;
        const QString path = sandbox.GetPath(name);
        Write(path, "old");
        Write(path, "new");
        EXPECT_EQ(ReadFile(path), "new");
        EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList(name));
    }
}

TEST(GDurableFile, RightsStayAndLinksStayLinks)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("real/a.prefs"_q);
    QDir(sandbox.GetPath()).mkpath("real/deep"_q);
    Write(path, "1");
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "Links and rights of POSIX are tried as root.";
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup);
    const QFileDevice::Permissions before = QFile::permissions(path);
    // Through a folder that is a link itself: ".." in the link means the folder above the real one.
    ASSERT_TRUE(QFile::link(sandbox.GetPath("real/deep"_q), sandbox.GetPath("short"_q)));
    const QString link = sandbox.GetPath("short/link"_q);
    ASSERT_TRUE(QFile::link("../a.prefs"_q, link));
    const QString dangling = sandbox.GetPath("dangling"_q);
    ASSERT_TRUE(QFile::link("real/new.prefs"_q, dangling));
    Write(link, "2");
    Write(dangling, "3");
    EXPECT_EQ(ReadFile(path), "2");
    EXPECT_EQ(QFile::permissions(path), before);
    EXPECT_EQ(ReadFile(sandbox.GetPath("real/new.prefs"_q)), "3");
    EXPECT_TRUE(QFileInfo(link).isSymLink() && QFileInfo(dangling).isSymLink());
    ASSERT_TRUE(QFile::link("loop"_q, sandbox.GetPath("loop"_q)));
    EXPECT_THROW(Write(sandbox.GetPath("loop"_q), "4"), GCustomException);
}

TEST(GDurableFile, FailureRaisesAndLeavesNothingBehind)
{
    const Sandbox sandbox;
    for (const char* name : {"none/a.prefs", "."}) {
        EXPECT_EQ(GetErrorCode([&] { Write(sandbox.GetPath(QString::fromLatin1(name)), "1"); }),
                  GErrorCode::cFile);
    }
    EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList());
}

TEST(GDurableFile, OnWindowsWhoeverHoldsTheFileOpenOrReadOnlyKeepsIt)
{
    if (QDir::separator() == QLatin1Char('/'))
        GTEST_SKIP() << "An open file is replaced like any other here.";
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    Write(path, "old");
    QFile holder(path);
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));
    EXPECT_THROW(Write(path, "new"), GCustomException);
    holder.close();
    {
        const GFileInputStream sharing(path);
        Write(path, "with a sharing reader");
        Write(path, "old");
    }
    QFile::setPermissions(path, QFileDevice::ReadOwner);
    EXPECT_THROW(Write(path, "new"), GCustomException);
    EXPECT_EQ(ReadFile(path), "old");
    EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList{"a.prefs"_q});
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

// The system's way of replacing a file that somebody has open takes two steps. `reads` is what is read next,
// and what a writer finds that gives up.
TEST(GDurableFile, OnWindowsWhatAKillLeavesBetweenTwoStepsIsPutRight)
{
    if (QDir::separator() == QLatin1Char('/'))
        GTEST_SKIP() << "There is one step here.";
    const struct
    {
        const char *target, *fresh, *old, *older, *reads;
        QString name = "a.prefs"_q;
        const char* others = nullptr;  // of another target, whose name is longer
    } cases[] = {{"old", "fresh", nullptr, nullptr, "old"},
                 {nullptr, "fresh", "old", nullptr, "old"},
                 {"fresh", nullptr, "old", nullptr, "fresh"},
                 {nullptr, "fresh", "old", "older", "old"},
                 {nullptr, "fresh", "old", "older", "old", QString(70, QChar(0x30d7))},
                 {nullptr, "fresh", "old", "older", "old", "a.prefs"_q, "others"},
                 {nullptr, "fresh", nullptr, nullptr, nullptr, "a.prefs"_q, "others"},
                 {nullptr, "fresh", nullptr, nullptr, nullptr}};
    const QString machine = GetMachine();
    for (const auto& test : cases) {
        for (const char* first : {"look", "read", "write"}) {
            const Sandbox sandbox;
            const QString path = sandbox.GetPath(test.name);
            const QString stem =
                sandbox.GetPath(MakeTemporaryName(test.name).section(QLatin1Char('.'), 0, -3));
            const auto put = [&](const char* content, const char* ending) {
                const QString name = stem + QString::fromLatin1(ending).replace("%1"_q, machine);
                if (content != nullptr)
                    WriteFile(name, content);
                return name;
            };
            put(test.older, ".999999-1-%1-zzzzzz.new.old");
            std::this_thread::sleep_for(std::chrono::milliseconds(test.older != nullptr ? 50 : 0));
            put(test.target, "");
            put(test.fresh, ".999999-2-%1-aaaaaa.new");
            put(test.old, ".999999-2-%1-aaaaaa.new.old");
            const QString others = put(test.others, ".damaged.999999-3-%1-aaaaaa.new.old");
            const auto read = [&path] {
                const auto file = GFileInputStream::OpenIfThere(path);
                char content[10] = {};
                return file == nullptr ? QByteArray() : QByteArray(content, file->Read(content, 10));
            };
            if (*first == 'l') {
                EXPECT_EQ(IsFileMissing(path), test.reads == nullptr);
            }
            if (*first == 'w') {
                const GDurableFile dropped((GPathName(path)));
            }
            EXPECT_EQ(read(), QByteArray(test.reads));
            Write(path, "next");
            EXPECT_EQ(read(), "next");
            EXPECT_EQ(QFile::remove(others), test.others != nullptr);
            EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList{test.name});
        }
    }
}

TEST(GDurableFile, OnWindowsWhatCannotBeBroughtBackIsNotMissing)
{
    if (QDir::separator() == QLatin1Char('/'))
        GTEST_SKIP() << "There is one step here.";
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    const QString old = path + ".999999-2-%1-aaaaaa.new.old"_q.arg(GetMachine());
    WriteFile(old, "old");
    QFile holder(old);
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));  // without the right to rename it meanwhile
    EXPECT_FALSE(IsFileMissing(path));
    EXPECT_THROW(GFileInputStream::OpenIfThere(path), GException);
    EXPECT_THROW(Write(path, "new"), GException);
    // Who holds it for a moment is waited for.
    std::thread release([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        holder.close();
    });
    EXPECT_NE(GFileInputStream::OpenIfThere(path), nullptr);
    release.join();
    EXPECT_EQ(ReadFile(path), "old");
}

// What a process number in a name says means nothing to a process of another namespace.
TEST(GDurableFile, LeftoversOfTheDeadGoWithTheNextWriteWhateverTheirNamesSay)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    const uint32_t process = GProcessInfo::GetOwnProcessID();
    const QString machine = GetMachine();
    const auto makeName = [&machine](const char* leaf, uint32_t id, uint64_t startTime) {
        return "%1.%2-%3-%4-aaaaaa.new"_q.arg(QString::fromLatin1(leaf), QString::number(id),
                                              QString::number(startTime, 16), machine);
    };
    const uint64_t startTime = GProcessInfo::GetStartTime(process);
    const bool isByLock = QDir::separator() == QLatin1Char('/');
    const QString owned = makeName("a.prefs", isByLock ? 999999 : process, startTime);
    ChildProcess owner("OwnFile"_q, {sandbox.GetPath(owned)});
    ASSERT_EQ(owner.ReadLine(), "owned");
    QStringList others = {makeName("b.prefs", process, startTime + 1), "a.prefs.new"_q};
    for (const QString& name : others + QStringList{makeName("a.prefs", process, startTime + 1)})
        WriteFile(sandbox.GetPath(name), "left");
    const QString living = "a.prefs.%1-%2-%3-bbbbbb.new"_q.arg(process).arg(startTime, 0, 16);
    if (isByLock)
        WriteFile(sandbox.GetPath(living.arg(machine)), "left");
    // Of processes of another machine nobody here knows whether they live.
    const QString foreign =
        sandbox.GetPath(makeName("a.prefs", process, startTime + 1).replace(machine, "0000dead"_q));
    WriteFile(foreign, "left");
    if (!isByLock)
        others.append(QFileInfo(foreign).fileName());
    Write(path, "1");
    QStringList expected = others + QStringList{"a.prefs"_q, owned};
    expected.sort();
    EXPECT_EQ(ListFolder(sandbox.GetPath()), expected);
    owner.Kill();
    if (isByLock) {
        Write(path, "2");
        EXPECT_FALSE(QFile::exists(sandbox.GetPath(owned)));
    }
}

TEST(GOwnedFile, StaysAsLongAsItsOwnerLives)
{
    const Sandbox sandbox;
    const auto getPath = [&](const QString& name) { return GPathName(sandbox.GetPath(name)); };
    WriteFile(sandbox.GetPath("0"_q), "taken");
    int number = 0;
    {
        const GOwnedFile file([&] { return getPath(QString::number(number++)); });
        EXPECT_EQ(file.GetPathName(), getPath("1"_q));
        EXPECT_TRUE(GOwnedFile::IsOwned(file.GetPathName()));
        GOwnedFile::RemoveUnowned(file.GetPathName());
        EXPECT_TRUE(WriteFile(file.GetPathName().GetNativePath(), "written beside the owner"));
        ASSERT_TRUE(QFile::rename(file.GetPathName().GetNativePath(), sandbox.GetPath("moved"_q)));
        EXPECT_TRUE(GOwnedFile::IsOwned(getPath("moved"_q)));
    }
    EXPECT_EQ(ListFolder(sandbox.GetPath()), (QStringList{"0"_q, "moved"_q}));
    EXPECT_FALSE(GOwnedFile::IsOwned(getPath("moved"_q)) || GOwnedFile::IsOwned(getPath("none"_q)));
    QDir().mkdir(sandbox.GetPath("folder"_q));
    for (const QString& name : {"moved"_q, "none"_q, "folder"_q})
        GOwnedFile::RemoveUnowned(getPath(name));
    {
        GOwnedFile kept([&] { return getPath("kept"_q); });
        kept.Disown();
        EXPECT_FALSE(GOwnedFile::IsOwned(getPath("kept"_q)));
    }
    GOwnedFile::RemoveUnowned(getPath("kept"_q), [] { return false; });  // what it stands for is still there
    EXPECT_EQ(ListFolder(sandbox.GetPath()), (QStringList{"0"_q, "folder"_q, "kept"_q}));
    EXPECT_EQ(GetErrorCode([&] { GOwnedFile file([&] { return getPath("none/a"_q); }); }), GErrorCode::cFile);
}

// A file is made and then locked; who clears up in between must not take it from under its maker.
TEST(GOwnedFile, IsNeverTakenFromUnderItsMaker)
{
    const Sandbox sandbox;
    std::atomic<bool> isDone{false};
    std::atomic<int> lost{0};
    const GPathName path(sandbox.GetPath("a"_q));
    // On Windows a name stays as long as anybody has the removed file open; many who look would keep it so.
    const int threads = QDir::separator() == QLatin1Char('/') ? 6 : 2;
    RunInThreads(threads, [&](int thread) {
        while (thread > 0 && !isDone) {
            GOwnedFile::RemoveUnowned(path);
            std::this_thread::yield();
        }
        for (int round = 0; thread == 0 && round < (threads > 2 ? 2000 : 200); ++round) {
            int attempt = 0;
            const GOwnedFile file([&] {
                if (attempt++ > 0)  // one who clears up has it in hand, and may have been interrupted
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                return path;
            });
            std::this_thread::yield();
            if (!QFile::exists(path.GetNativePath()))
                ++lost;
        }
        isDone = isDone || thread == 0;
    });
    EXPECT_EQ(lost, 0);
}

TEST(GDurableFile, WritersAtOnceLeaveOneWholeFile)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    RunInThreads(4, [&path](int thread) {
        for (int i = 0; i < 50; ++i)
            Write(path, QByteArray(20000, static_cast<char>('a' + thread)));
    });
    const QByteArray content = ReadFile(path);
    EXPECT_EQ(content, QByteArray(20000, content.at(0)));
    EXPECT_EQ(ListFolder(sandbox.GetPath()), QStringList{"a.prefs"_q});
}
