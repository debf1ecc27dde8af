#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"
#include "tests/support/SecondUser.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// As another user: makes a segment of the name, open to all, and tries to get at the other's lock.
CHILD_ROLE(BeSomebodyElse)
{
    if (!BecomeSecondUser())
        return 1;
    ::umask(0);
    const QByteArray name = QFile::encodeName(arguments.at(0));
    const int descriptor = ::shm_open(name.constData(), O_RDWR | O_CREAT | O_EXCL, 0666);
    if (descriptor < 0 || ::ftruncate(descriptor, 100000) != 0)
        return 2;
    const GString lock = arguments.at(1);
    if (GetErrorCode([&] { GInterProcessMutex mutex(lock); }) != GErrorCode::cCreateSemaphore)
        return 3;
    if (GetErrorCode([&] { GInterProcessMutex::Remove(lock); }) != GErrorCode::cUnlinkSemaphore)
        return 4;
    return 0;
}

TEST_F(IpcTest, SegmentsOfAnotherUserAreRefusedAndOursAreClosed)
{
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "Only root can act as a second user.";
    const GString lock = GetName("lock");
    const GInterProcessMutex mutex(lock);
    ASSERT_EQ(ChildProcess("BeSomebodyElse"_q, {GetChannelName(), lock}).WaitForExit(), 0);
    EXPECT_EQ(GetErrorCode([] { GPPIPCManager::Get(); }), GErrorCode::cSegmentHeader);
    EXPECT_EQ(GetErrorCode([&] { GSharedSegment(GetChannelName(), 10, GSharedSegment::Mode::Open); }),
              GErrorCode::cSegmentHeader);
    GInterProcessMutex::Remove(lock);
}

TEST_F(IpcTest, SegmentThatOthersMayOpenIsRefused)
{
    const QByteArray name = QFile::encodeName(GetChannelName());
    const int descriptor = ::shm_open(name.constData(), O_RDWR | O_CREAT | O_EXCL, 0600);
    ASSERT_EQ(::ftruncate(descriptor, 3084), 0);
    ASSERT_EQ(::fchmod(descriptor, 0640), 0);
    EXPECT_EQ(GetErrorCode([] { GPPIPCManager::Get(); }), GErrorCode::cSegmentHeader);
    ASSERT_EQ(::fchmod(descriptor, 0600), 0);
    EXPECT_EQ(GetErrorCode([] { GPPIPCManager::Get(); }), 0);
    ::close(descriptor);
}
