#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GInterProcessSemaphore.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"

using std::chrono::milliseconds;

TEST_F(IpcTest, LockKeepsOthersOut)
{
    const GString name = GetName("lock");
    GInterProcessMutex mutex(name);
    {
        ChildProcess holder("HoldLock"_q, {name});
        ASSERT_EQ(holder.ReadLine(), "held");
        EXPECT_FALSE(mutex.Lock(milliseconds(20)));
        EXPECT_EQ(GetErrorCode([&] { GInterProcessLock(mutex, milliseconds(1)); }),
                  GErrorCode::cLockSemaphore);
        EXPECT_EQ(GetErrorCode([&] { mutex.Unlock(); }), GErrorCode::cUnlockSemaphore);
        holder.Say("let go");
        EXPECT_EQ(holder.WaitForExit(), 0);
    }
    EXPECT_TRUE(mutex.Lock(milliseconds(0)));
    mutex.Unlock();
    GInterProcessMutex::Remove(name);
    GInterProcessMutex::Remove(name);
}

TEST_F(IpcTest, SemaphoreCountsBetweenProcesses)
{
    const GString name = GetName("semaphore");
    GInterProcessSemaphore semaphore(name, 1);
    EXPECT_TRUE(semaphore.Acquire(milliseconds(0)));
    EXPECT_FALSE(semaphore.Acquire(milliseconds(5)));
    EXPECT_EQ(ChildProcess("ReleaseSemaphore"_q, {name}).WaitForExit(), 0);
    EXPECT_TRUE(semaphore.Acquire(milliseconds(0)));
}

TEST_F(IpcTest, WhatCannotBeMadeRaisesItsCode)
{
    WriteFile(mSandbox.GetPath("Channel_x"_q), "a file in the place of the folder");
    const GString name = mSandbox.GetPath("Channel_x/no/such\\name"_q);
    EXPECT_EQ(GetErrorCode([&] { GInterProcessMutex mutex(name); }), GErrorCode::cCreateSemaphore);
    EXPECT_EQ(GetErrorCode([&] { GInterProcessSemaphore semaphore(name, 0); }), GErrorCode::cCreateSemaphore);
    EXPECT_EQ(GetErrorCode([&] { GSharedSegment(name, 64, GSharedSegment::Mode::OpenOrCreate); }),
              GErrorCode::cSegmentHeader);
    EXPECT_EQ(GetErrorCode([&] { GSharedSegment(GetName("missing"), 64, GSharedSegment::Mode::Open); }),
              GErrorCode::cSegmentHeader);
}

TEST_F(IpcTest, SegmentIsSharedAndASmallerOneRefused)
{
    const GString name = GetName("segment");
    const GSharedSegment segment(name, 3000, GSharedSegment::Mode::OpenOrCreate);
    EXPECT_EQ(segment.GetData()[2999], 0);
    segment.GetData()[2999] = 7;
    EXPECT_EQ(GSharedSegment(name, 3000, GSharedSegment::Mode::Open).GetData()[2999], 7);
    EXPECT_EQ(GetErrorCode([&] { GSharedSegment(name, 100000, GSharedSegment::Mode::Open); }),
              GErrorCode::cSegmentHeader);
}
