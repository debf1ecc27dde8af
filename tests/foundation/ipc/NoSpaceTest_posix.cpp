#include "foundation/ipc/GMessageQueue.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"
#include "tests/support/FaultyDisk.h"

#include <fcntl.h>
#include <unistd.h>
#include <csignal>

namespace
{
constexpr int cNoDisk = 77;
constexpr size_t cQueue = 262144;

int MakeFile(const GString& name)
{
    QDir().mkpath(QFileInfo(name).path());
    return ::open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_EXCL, 0600);
}

// A segment that its maker has given a size and no space.
void MakeHollow(const GString& name, off_t size)
{
    const int descriptor = MakeFile(name);
    EXPECT_EQ(::ftruncate(descriptor, size), 0);
    ::close(descriptor);
}

int32_t OpenSegment(const GString& name, GSharedSegment::Mode mode)
{
    return GetErrorCode([&] {
        const GSharedSegment segment(name, cQueue, mode);
        std::fill_n(segment.GetData(), segment.GetSize(), uint8_t(1));
    });
}
}  // namespace

// On a disk of 16 KB, where touching memory that is not there would kill the process.
CHILD_ROLE(FillSmallDisk)
{
    using Mode = GSharedSegment::Mode;
    if (!MountSmallDisk(qEnvironmentVariable("MORVANE_ROOT"), 16 * 1024))
        return cNoDisk;
    const GString name = arguments.at(0);
    for (const Mode mode : {Mode::CreateNew, Mode::OpenOrCreate}) {
        EXPECT_EQ(OpenSegment(name, mode), GErrorCode::cSegmentHeader);
        EXPECT_FALSE(GSharedSegment::IsThere(name));
    }
    EXPECT_EQ(GetErrorCode([&] { GMessageQueue::Create(name, cQueue); }), GErrorCode::cSegmentHeader);
    MakeHollow(name, cQueue);
    for (const Mode mode : {Mode::Open, Mode::OpenOrCreate}) {
        EXPECT_EQ(OpenSegment(name, mode), GErrorCode::cSegmentHeader);
        EXPECT_TRUE(GSharedSegment::IsThere(name));
    }
    // The directory finds room, the receiver's queue does not; nothing of the receiver stays.
    EXPECT_EQ(GetErrorCode([] { const GPPIPCReceiver receiver([](const GPPIPCMessage&) {}); }),
              GErrorCode::cSegmentHeader);
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(GProcessInfo::GetOwnProcessID()),
              GPPIPCState::NoReceiver);
    return testing::Test::HasFailure() ? 1 : 0;
}

// Where space can't be claimed by a call.
CHILD_ROLE(UsePlainDisk)
{
    if (!MountDiskThatClaimsNothing(qEnvironmentVariable("MORVANE_ROOT")))
        return cNoDisk;
    int taken = 0;
    GPPIPCReceiver receiver([&taken](const GPPIPCMessage&) { ++taken; });
    GPPIPCManager::Get()->Post(GProcessInfo::GetOwnProcessID(), 1, GBuffer(200000, 'x'));
    receiver.TakeUp();
    return taken == 1 ? 0 : 1;
}

CHILD_ROLE(FillUpToOwnLimit)
{
    if (!LimitFileSize(100000))
        return cNoDisk;
    std::signal(SIGXFSZ, SIG_DFL);
    return OpenSegment(arguments.at(0), GSharedSegment::Mode::CreateNew) == GErrorCode::cSegmentHeader ? 0
                                                                                                       : 1;
}

TEST_F(IpcTest, SpaceThatCannotBeHadIsAnErrorNotASignal)
{
    for (const char* role : {"FillSmallDisk", "FillUpToOwnLimit", "UsePlainDisk"}) {
        const int status = ChildProcess(QString::fromLatin1(role), {GetName("segment")}).WaitForExit();
        if (status == cNoDisk)
            GTEST_SKIP() << "This user may not mount a disk.";
        EXPECT_EQ(status, 0) << role;
    }
}

TEST_F(IpcTest, SegmentOfAbsurdSizeIsRefused)
{
    MakeHollow(GetName("segment"), off_t(1) << 27);
    EXPECT_EQ(OpenSegment(GetName("segment"), GSharedSegment::Mode::Open), GErrorCode::cSegmentHeader);
}
