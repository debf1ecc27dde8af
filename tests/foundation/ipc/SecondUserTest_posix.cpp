#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"
#include "tests/support/SecondUser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// As another user: tries to get at somebody's lock.
CHILD_ROLE(BeSomebodyElse)
{
    if (!BecomeSecondUser())
        return 1;
    const GString lock = arguments.at(0);
    if (GetErrorCode([&] { GInterProcessMutex mutex(lock); }) != GErrorCode::cCreateSemaphore)
        return 2;
    if (GetErrorCode([&] { GInterProcessMutex::Remove(lock); }) != GErrorCode::cUnlinkSemaphore)
        return 3;
    return 0;
}

TEST_F(IpcTest, OurSegmentsAreClosedToAnotherUser)
{
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "Only root can act as a second user.";
    const GString lock = GetName("lock");
    const GInterProcessMutex mutex(lock);
    ASSERT_EQ(ChildProcess("BeSomebodyElse"_q, {lock}).WaitForExit(), 0);
}

TEST_F(IpcTest, SegmentOrFolderThatOthersMayOpenIsRefused)
{
    const auto getCode = [] { return GetErrorCode([] { const GPPIPCReceiver receiver([](auto&) {}); }); };
    const QByteArray name = QFile::encodeName(GetChannelName());
    const QByteArray folder = name.left(name.lastIndexOf('/'));
    ASSERT_EQ(::mkdir(folder.constData(), 0700), 0);
    const int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL, 0600);
    ASSERT_EQ(::ftruncate(descriptor, 3084), 0);
    ASSERT_EQ(::fchmod(descriptor, 0640), 0);
    EXPECT_EQ(getCode(), GErrorCode::cSegmentHeader);
    ASSERT_EQ(::fchmod(descriptor, 0600), 0);
    ASSERT_EQ(::chmod(folder.constData(), 0777), 0);
    EXPECT_EQ(getCode(), GErrorCode::cCreateSemaphore);
    ASSERT_EQ(::chmod(folder.constData(), 0700), 0);
    EXPECT_EQ(getCode(), 0);
    ::close(descriptor);
}
