#include "foundation/core/GErrorCodes.h"
#include "foundation/system/GLockByFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/SecondUser.h"
#include "tests/support/Test.h"

static bool CanLock(const GPathName& path, GLockType type)
{
    return GLockByFile(path, type, GLockWait::cTryOnce).IsLocked();
}

// Holds a lock, with a marker file beside the lock file that goes before the lock does.
CHILD_ROLE(HoldLock)
{
    const GPathName path(arguments.at(0));
    const GLockType type = arguments.at(1) == QLatin1String("read") ? GLockType::cRead : GLockType::cWrite;
    const GLockByFile lock(path, type, GLockWait::cUntilFree);
    if (!WriteFile(arguments.at(2), ""))
        return 1;
    SayToParent("held");
    HearFromParent();
    return QFile::remove(arguments.at(2)) ? 0 : 1;
}

// Waits for the write lock and says which markers it met.
CHILD_ROLE(WaitToWrite)
{
    const GPathName path(arguments.at(0));
    SayToParent("waiting");
    const GLockByFile lock(path, GLockType::cWrite, GLockWait::cUntilFree);
    const QStringList markers = QDir(path.GetParent().GetNativePath()).entryList({"reader*"_q});
    SayToParent("met " + QByteArray::number(markers.size()));
    return 0;
}

TEST(GLockFile, OnlyReadersShareWithinOneProcessToo)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath("a.lock"_q));
    for (const GLockType held : {GLockType::cRead, GLockType::cWrite}) {
        for (const GLockType wanted : {GLockType::cRead, GLockType::cWrite}) {
            GLockFile holder(path);
            ASSERT_EQ(holder.TryLock(held), GLockFile::Result::cLocked);
            EXPECT_EQ(CanLock(path, wanted), held == GLockType::cRead && wanted == GLockType::cRead);
            holder.Unlock();
            EXPECT_TRUE(CanLock(path, wanted));
        }
    }
}

TEST(GLockFile, WriterWaitsForBothReaders)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath("a.lock"_q));
    const QString file = path.GetNativePath();
    ChildProcess first("HoldLock"_q, {file, "read"_q, sandbox.GetPath("reader1"_q)});
    ChildProcess second("HoldLock"_q, {file, "read"_q, sandbox.GetPath("reader2"_q)});
    EXPECT_EQ(first.ReadLine(), "held");
    EXPECT_EQ(second.ReadLine(), "held");
    ChildProcess writer("WaitToWrite"_q, {path.GetNativePath()});
    EXPECT_EQ(writer.ReadLine(), "waiting");
    EXPECT_FALSE(CanLock(path, GLockType::cWrite));
    EXPECT_EQ(first.WaitForExit(), 0);
    EXPECT_FALSE(CanLock(path, GLockType::cWrite));
    EXPECT_EQ(second.WaitForExit(), 0);
    EXPECT_EQ(writer.ReadLine(), "met 0");
    EXPECT_EQ(writer.WaitForExit(), 0);
}

TEST(GLockFile, KilledHolderFreesTheLock)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath("a.lock"_q));
    ChildProcess holder("HoldLock"_q, {path.GetNativePath(), "write"_q, sandbox.GetPath("marker"_q)});
    ASSERT_EQ(holder.ReadLine(), "held");
    EXPECT_FALSE(CanLock(path, GLockType::cRead));
    holder.Kill();
    EXPECT_TRUE(CanLock(path, GLockType::cWrite));
}

TEST(GLockFile, WhatCanNotBeLockedRaisesInsteadOfWaiting)
{
    const Sandbox sandbox;
    for (const char* name : {"none/a.lock", "."}) {
        const GPathName path(sandbox.GetPath(QString::fromLatin1(name)));
        EXPECT_EQ(GetErrorCode([&] { GLockByFile(path, GLockType::cRead, GLockWait::cUntilFree); }),
                  GErrorCode::cLockFile)
            << name;
    }
}

TEST(GLockFile, LockFileIsTheOwnersAndNoLinkIsFollowed)
{
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "Rights and links of POSIX are tried as root.";
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath("a.lock"_q));
    ASSERT_TRUE(CanLock(path, GLockType::cRead));
    EXPECT_FALSE(QFile::permissions(path.GetNativePath()) &
                 (QFileDevice::ReadGroup | QFileDevice::ReadOther));
    const QString link = sandbox.GetPath("link.lock"_q);
    ASSERT_TRUE(QFile::link(path.GetNativePath(), link));
    EXPECT_THROW(CanLock(GPathName(link), GLockType::cWrite), GCustomException);
}
