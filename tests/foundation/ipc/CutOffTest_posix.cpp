#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GPPIPCChannel.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>

// What befalls the files of the channel while a receiver and a sender have them open. On Windows nobody can
// take away or cut short what is open.
namespace
{
void Overwrite(const QString& path, int offset, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) && file.seek(offset));
    EXPECT_EQ(file.write(bytes), bytes.size());
    EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
}

void CutShort(const QString& path)
{
    EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), 0), 0);
}

class CutOffTest : public IpcTest
{
protected:
    QString GetQueue() const
    {
        const GSharedSegment directory(GetChannelName(), GPPIPCDirectory::cSize, GSharedSegment::Mode::Open);
        return GetQueueName(mOwnID, GPPIPCDirectory(directory.GetData()).GetPairs().front().receiver);
    }

    const uint32_t mOwnID = GProcessInfo::GetOwnProcessID();
};
}  // namespace

TEST_F(CutOffTest, ReceiverIsFoundAgainAndNothingPostedIsLost)
{
    using Damage = std::function<void(const QString& directory, const QString& queue)>;
    const struct
    {
        const char* name;
        Damage damage;
        bool losesQueue;
    } cases[] = {
        {"all names", [](auto& d, auto&) { QDir(QFileInfo(d).path()).removeRecursively(); }, false},
        {"directory", [](auto& d, auto&) { QFile::remove(d); }, false},
        {"directory's lock", [](auto& d, auto&) { QFile::remove(d + "_L"_q); }, false},
        {"queue", [](auto&, auto& q) { QFile::remove(q); }, false},
        {"queue's lock", [](auto&, auto& q) { QFile::remove(q + "_L"_q); }, false},
        {"queue's semaphore", [](auto&, auto& q) { QFile::remove(q + "_S"_q); }, false},
        {"pairs", [](auto& d, auto&) { Overwrite(d, 8, QByteArray(4, 0)); }, false},
        {"header", [](auto& d, auto&) { Overwrite(d, 0, "damaged"); }, false},
        {"directory cut", [](auto& d, auto&) { CutShort(d); }, false},
        {"directory's lock cut", [](auto& d, auto&) { CutShort(d + "_L"_q); }, false},
        {"lock's header",
         [](auto& d, auto&) {
             QFile::remove(d + "_L"_q);
             Overwrite(d + "_L"_q, 0, QByteArray(64, 'x'));
         },
         false},
        {"queue cut", [](auto&, auto& q) { CutShort(q); }, true},
        {"queue's lock cut", [](auto&, auto& q) { CutShort(q + "_L"_q); }, false},
        {"queue's semaphore cut", [](auto&, auto& q) { CutShort(q + "_S"_q); }, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Sandbox sandbox;
        const auto manager = GPPIPCManager::Get();
        std::vector<GBuffer> payloads;
        GPPIPCReceiver receiver([&](const GPPIPCMessage& message) { payloads.push_back(message.payload); });
        manager->Post(mOwnID, 1, "before");
        test.damage(GetChannelName(), GetQueue());
        GetErrorCode([&] { manager->Post(mOwnID, 1, "meanwhile"); });
        receiver.LookAfterPlaces();
        EXPECT_EQ(manager->GetReceiverState(mOwnID), GPPIPCState::Reachable);
        manager->Post(mOwnID, 1, "after");
        receiver.TakeUp();
        payloads.erase(std::remove(payloads.begin(), payloads.end(), "meanwhile"), payloads.end());
        EXPECT_EQ(payloads, test.losesQueue ? std::vector<GBuffer>({"after"})
                                            : std::vector<GBuffer>({"before", "after"}));
    }
}

// Cut short at the very moment of the access, after every look at it: there is no signal, and no success.
TEST_F(CutOffTest, WhoTouchesMemoryThatIsGoneIsToldByAnError)
{
    const GString name = GetName("queue");
    const std::unique_ptr<GMessageQueue> own = GMessageQueue::Create(name, 100000);
    const std::unique_ptr<GMessageQueue> others[] = {GMessageQueue::Open(name), GMessageQueue::Open(name)};
    CutShort(name + QLatin1String("_L"));
    EXPECT_EQ(GetErrorCode([&] { others[0]->Post("a"); }), GErrorCode::cPostMessage);
    CutShort(name);
    EXPECT_EQ(GetErrorCode([&] { others[1]->Post("b"); }), GErrorCode::cPostMessage);
    EXPECT_TRUE(own->Peek().empty());
    // A file that grew again is not the memory that was lost.
    EXPECT_EQ(::truncate(QFile::encodeName(name).constData(), 200000), 0);
    EXPECT_FALSE(own->IsIntact());
    CutShort(name + QLatin1String("_S"));
    own->WakeUp();
    EXPECT_TRUE(own->WaitForMessage(std::chrono::milliseconds(0)));
    EXPECT_FALSE(own->CanWait());
}

CHILD_ROLE(TouchForeignMemory)
{
    ::signal(SIGBUS, SIG_DFL);  // a sanitizer has a handler of its own
    const GSharedSegment guarded(arguments.at(0), 64, GSharedSegment::Mode::OpenOrCreate);
    const int file = ::open(QFile::encodeName(arguments.at(0)).constData(), O_RDWR);
    volatile char* const memory =
        static_cast<char*>(::mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    CutShort(arguments.at(0));
    return *memory;
}

TEST_F(CutOffTest, MemoryOfOthersEndsTheProcessAsEver)
{
    ChildProcess child("TouchForeignMemory"_q, {GetName("segment")});
    EXPECT_EQ(child.WaitForExit(), -1);
    EXPECT_FALSE(child.IsRunning());
}

// The handler's code may be a plug-in's that its host takes out of memory.
TEST_F(CutOffTest, SignalsAreHandledAsBeforeOnceTheLastMemoryIsGivenBack)
{
    const auto getHandler = [] {
        struct sigaction action = {};
        ::sigaction(SIGBUS, nullptr, &action);
        return reinterpret_cast<void*>(action.sa_sigaction);
    };
    void* const before = getHandler();
    for (int round = 0; round < 2; ++round) {
        auto first = std::make_unique<GSharedSegment>(GetName("first"), 100, GSharedSegment::Mode::CreateNew);
        const auto second =
            std::make_unique<GSharedSegment>(GetName("second"), 100, GSharedSegment::Mode::CreateNew);
        EXPECT_NE(getHandler(), before);
        first.reset();
        EXPECT_NE(getHandler(), before);
    }
    EXPECT_EQ(getHandler(), before);
}

TEST_F(CutOffTest, LockThatOutlivedTheMachinesStartOrWasCopiedIsFree)
{
    const GString name = GetName("lock");
    ChildProcess holder("HoldLock"_q, {name});
    ASSERT_EQ(holder.ReadLine(), "held");
    ASSERT_TRUE(QFile::copy(name, name + "2"_q));
    EXPECT_FALSE(GInterProcessMutex(name).Lock(std::chrono::milliseconds(0)));
    GInterProcessMutex copied(name + "2"_q);
    EXPECT_TRUE(copied.Lock(std::chrono::milliseconds(0)));
    copied.Unlock();
    Overwrite(name, 8, "earlier!");
    GInterProcessMutex old(name);
    EXPECT_TRUE(old.Lock(std::chrono::milliseconds(0)));
    old.Unlock();
}

TEST_F(CutOffTest, WhoWaitedForOneWhoPutTheSegmentAwayOpensTheNewOne)
{
    const GString name = GetName("segment");
    {
        const GSharedSegment segment(name, 64, GSharedSegment::Mode::OpenOrCreate);
    }
    const int file = ::open(QFile::encodeName(name).constData(), O_RDWR);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    bool isCurrent = false;
    std::thread waiter(
        [&] { isCurrent = GSharedSegment(name, 64, GSharedSegment::Mode::OpenOrCreate).IsCurrent(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(GSharedSegment::Remove(name));
    ::close(file);
    waiter.join();
    EXPECT_TRUE(isCurrent);
}

TEST_F(CutOffTest, WrongThingsUnderANameAreRefused)
{
    const QByteArray name = QFile::encodeName(GetName("segment"));
    const GString file = GetName("file");
    const QByteArray target = QFile::encodeName(file);
    {
        const GSharedSegment good(file, 64, GSharedSegment::Mode::OpenOrCreate);
    }
    const struct
    {
        std::function<int()> make;
        const char* reason;
    } cases[] = {
        {[&] { return ::mkfifo(name.constData(), 0600); }, "is no file"},
        {[&] { return ::symlink(target.constData(), name.constData()); }, "can't be opened"},
        {[&] { return ::symlink("nowhere", name.constData()); }, "can't be opened"},
        {[&] { return ::mkdir(name.constData(), 0700); }, "can't be opened"},
    };
    for (const auto& test : cases) {
        ASSERT_EQ(test.make(), 0);
        try {
            const GSharedSegment segment(GetName("segment"), 64, GSharedSegment::Mode::OpenOrCreate);
            ADD_FAILURE() << test.reason;
        } catch (const GException& error) {
            EXPECT_TRUE(error.GetDescription().contains(QString::fromUtf8(test.reason)))
                << error.GetDescription().toStdString();
        }
        ASSERT_EQ(::remove(name.constData()), 0);
    }
    const GSharedSegment queue(GetName("queue"), 1000, GSharedSegment::Mode::CreateNew);
    const GInterProcessMutex lock(GetName("queue_L"));
    GMessageRing::Make(queue.GetData(), 1000, {999999999, 0});
    EXPECT_FALSE(GMessageQueue::Open(GetName("queue"))->IsOwnerAlive());
    Overwrite(file, 0, QByteArray(64, 'x'));
    EXPECT_EQ(GetErrorCode([&] { const GInterProcessMutex mutex(file); }), GErrorCode::cCreateSemaphore);
}

TEST_F(CutOffTest, QueueWithoutItsSemaphoreLeavesNoName)
{
    const GString name = GetName("queue");
    const QString semaphore = name + "_S"_q;
    ASSERT_TRUE(QDir().mkpath(semaphore));
    EXPECT_EQ(::chmod(QFile::encodeName(QFileInfo(name).path()).constData(), 0700), 0);
    EXPECT_EQ(GetErrorCode([&] { GMessageQueue::Create(name, 1000); }), GErrorCode::cCreateSemaphore);
    EXPECT_FALSE(GSharedSegment::IsThere(name) || GSharedSegment::IsThere(name + "_L"_q));
}

// Holds the lock that somebody waits for, while its name is taken away.
TEST_F(CutOffTest, WhoWaitedForAPastDirectoryRegistersInTheNewOne)
{
    const GPPIPCReceiver first([](const GPPIPCMessage&) {});
    ChildProcess holder("HoldLock"_q, {GetChannelName() + QLatin1String("_L")});
    ASSERT_EQ(holder.ReadLine(), "held");
    GPPIPCChannel channel(GetChannelName());
    std::thread waiter([&] { EXPECT_EQ(GetErrorCode([&] { channel.Register(77, 0); }), 0); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    for (const char* ending : {"", "_L"})
        QFile::remove(GetChannelName() + QLatin1String(ending));
    holder.Say("let go");
    waiter.join();
    const std::vector<uint32_t> receivers = GPPIPCChannel(GetChannelName()).GetReceivers(mOwnID);
    EXPECT_NE(std::find(receivers.cbegin(), receivers.cend(), 77U), receivers.cend());
}

TEST_F(CutOffTest, PostThatMeetsAClosedQueueGoesToTheNewOne)
{
    std::vector<GBuffer> payloads;
    GPPIPCReceiver receiver([&](const GPPIPCMessage& message) { payloads.push_back(message.payload); });
    const auto manager = GPPIPCManager::Get();
    EXPECT_EQ(manager->GetReceiverState(mOwnID), GPPIPCState::Reachable);
    const auto past = GMessageQueue::Open(GetQueue());
    ChildProcess holder("HoldLock"_q, {GetQueue() + "_L"_q});
    ASSERT_EQ(holder.ReadLine(), "held");
    std::thread poster([&] { EXPECT_EQ(GetErrorCode([&] { manager->Post(mOwnID, 1, "late"); }), 0); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    QFile::remove(GetQueue());
    receiver.LookAfterPlaces();
    holder.Say("let go");
    poster.join();
    receiver.TakeUp();
    EXPECT_EQ(payloads, std::vector<GBuffer>({"late"}));
    EXPECT_EQ(GetErrorCode([&] { past->Post("to nobody"); }), GErrorCode::cPostMessage);
}

namespace
{
// The queues that dead processes of a number left for their keeper.
class LeftQueues
{
public:
    LeftQueues(const std::function<GString(uint32_t)>& getName, uint32_t process, uint32_t count)
    {
        const uint64_t otherStart = GProcessInfo::GetStartTime(process) + 1;
        for (uint32_t receiver = 1; receiver <= count; ++receiver) {
            mSegments.push_back(
                std::make_unique<GSharedSegment>(getName(receiver), 1000, GSharedSegment::Mode::CreateNew));
            const GInterProcessMutex lock(getName(receiver) + QLatin1String("_L"));
            GPPIPCMessage message;
            message.receiver = receiver;
            message.payload = "kept";
            GMessageRing::Make(mSegments.back()->GetData(), 1000, {process, otherStart, cKeeper, receiver})
                .Put(message.Encode());
        }
    }

    static constexpr uint64_t cKeeper = 5;

    size_t CountThere() const
    {
        return static_cast<size_t>(std::count_if(mSegments.cbegin(), mSegments.cend(),
                                                 [](const auto& segment) { return segment->IsCurrent(); }));
    }

private:
    std::vector<std::unique_ptr<GSharedSegment>> mSegments;
};
}  // namespace

// Process numbers come again: the dead one's is this one's.
TEST_F(CutOffTest, NobodyTakesTheNameOfMessagesThatWaitForTheirKeeper)
{
    constexpr uint32_t cCount = 200;  // far more than the tests before have used
    const LeftQueues left([this](uint32_t receiver) { return GetQueueName(mOwnID, receiver); }, mOwnID,
                          cCount);
    EXPECT_EQ(GetErrorCode([&] { GPPIPCChannel(GetChannelName()).Register(3, 0); }),
              GErrorCode::cSegmentHeader);
    const GPPIPCReceiver receiver([](const GPPIPCMessage&) {});
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(mOwnID), GPPIPCState::Reachable);
    EXPECT_EQ(left.CountThere(), cCount);
}

// Also at a later attempt, when the receiver has a number that the messages do not name.
TEST_F(CutOffTest, KeeperGetsTheMessagesOfADeadProcessOfTheSameNumber)
{
    const LeftQueues left([this](uint32_t receiver) { return GetQueueName(mOwnID, receiver); }, mOwnID, 3);
    int kept = 0;
    bool isFailing = true;
    const auto keep = [&](const std::vector<GPPIPCMessage>& messages) {
        if (isFailing)
            throw GSimpleException(GErrorCode::cFile, "no space"_q);
        kept += static_cast<int>(messages.size());
    };
    GPPIPCReceiver receiver([](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
                            {LeftQueues::cKeeper, keep});
    isFailing = false;
    receiver.LookAfterPlaces();
    EXPECT_EQ(kept, 3);
    EXPECT_EQ(left.CountThere(), 0U);
}

// A kill between the two would lose what was posted.
TEST_F(CutOffTest, QueueKeepsItsNameUntilWhatItHoldsIsKept)
{
    bool isFailing = true;
    int kept = 0;
    const auto keep = [&](const std::vector<GPPIPCMessage>& messages) {
        if (isFailing)
            throw GSimpleException(GErrorCode::cFile, "no space"_q);
        kept += static_cast<int>(messages.size());
    };
    const auto manager = GPPIPCManager::Get();
    GPPIPCReceiver receiver([](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
                            {LeftQueues::cKeeper, keep});
    manager->Post(mOwnID, 1, "x");
    const GSharedSegment queue(GetQueue(), 1000, GSharedSegment::Mode::Open);
    QFile::remove(GetQueue() + "_S"_q);
    for (int look = 0; look < 2; ++look) {
        receiver.LookAfterPlaces();
        EXPECT_TRUE(queue.IsCurrent()) << look;
    }
    isFailing = false;
    receiver.LookAfterPlaces();
    EXPECT_EQ(kept, 1);
    EXPECT_EQ(manager->GetReceiverState(mOwnID), GPPIPCState::Reachable);
}

TEST_F(CutOffTest, WhoLivesGetsTheRoomOfWhatWasLeft)
{
    const auto getName = [](uint32_t receiver) { return GetQueueName(999999999, receiver); };
    const LeftQueues left(getName, 999999999, GPPIPCDirectory::cMostPairs);
    const GPPIPCReceiver receiver([](const GPPIPCMessage&) {});
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(mOwnID), GPPIPCState::Reachable);
    EXPECT_EQ(left.CountThere(), 0U);
}
