#include "foundation/ipc/GInterProcessSemaphore.h"

#include "IpcFixture.h"

#include <sys/syscall.h>
#include <unistd.h>
#include <ctime>

#include <atomic>

namespace
{
std::atomic<time_t> gWallClockAhead{0};  // seconds
}

// In the place of the C library's, for everything in this program: the wall clock can be put wrong.
extern "C" int clock_gettime(clockid_t clock, struct timespec* time) noexcept
{
    const long status = ::syscall(SYS_clock_gettime, clock, time);
    if (status == 0 && clock == CLOCK_REALTIME)
        time->tv_sec += gWallClockAhead;
    return static_cast<int>(status);
}

// Waits that go by a wall clock that is put back by an hour while they last would take an hour.
CHILD_ROLE(WaitByTheClock)
{
    gWallClockAhead = 3600;
    GInterProcessMutex mutex(arguments.at(0));
    if (mutex.Lock(std::chrono::milliseconds(20)))
        return 1;
    SayToParent("lock");
    GInterProcessSemaphore semaphore(arguments.at(0) + "_S"_q, 0);
    if (semaphore.Acquire(std::chrono::milliseconds(20)))
        return 1;
    SayToParent("semaphore");
    return 0;
}

TEST_F(IpcTest, ClockThatIsPutBackMakesNoWaitLonger)
{
    const GString name = GetName("lock");
    GInterProcessMutex mutex(name);
    const GInterProcessLock lock(mutex);
    ChildProcess waiter("WaitByTheClock"_q, {name});
    EXPECT_EQ(waiter.ReadLine(), "lock");
    EXPECT_EQ(waiter.ReadLine(), "semaphore");
}
