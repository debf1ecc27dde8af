#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GProcessInfo.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/SecondUser.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

namespace
{
void Write(const QString& path, const QByteArray& content)
{
    GDurableFile file((GPathName(path)));
    file.Write(content.constData(), content.size());
    file.Commit();
}

QStringList List(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                  QDir::Name);
}
}  // namespace

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
    EXPECT_EQ(List(sandbox.GetPath()), QStringList{"a.prefs"_q});
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
    EXPECT_EQ(List(sandbox.GetPath()), QStringList());
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
    EXPECT_EQ(List(sandbox.GetPath()), QStringList{"a.prefs"_q});
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

TEST(GDurableFile, LeftoversOfTheDeadGoWithTheNextWrite)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.prefs"_q);
    const uint32_t process = GProcessInfo::GetOwnProcessID();
    const auto makeName = [process](const char* leaf, uint64_t startTime) {
        return "%1.%2-%3-aaaaaa.new"_q.arg(QString::fromLatin1(leaf), QString::number(process),
                                           QString::number(startTime, 16));
    };
    const uint64_t startTime = GProcessInfo::GetStartTime(process);
    const QStringList kept = {makeName("a.prefs", startTime), makeName("b.prefs", startTime + 1),
                              "a.prefs.new"_q};
    for (const QString& name : kept + QStringList{makeName("a.prefs", startTime + 1)})
        Write(sandbox.GetPath(name), "left");
    Write(path, "1");
    QStringList expected = kept + QStringList{"a.prefs"_q};
    expected.sort();
    EXPECT_EQ(List(sandbox.GetPath()), expected);
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
    EXPECT_EQ(List(sandbox.GetPath()), QStringList{"a.prefs"_q});
}
