#include "IpcFixture.h"

#include <chrono>
#include <thread>

namespace
{
constexpr uint64_t cKeeper = 0x0123456789ABCDEF;

// Keeps payloads, as long as it is told to succeed.
struct Kept
{
    std::vector<GBuffer> payloads;
    std::vector<std::pair<uint64_t, uint64_t>> places;
    bool isFailing = false;

    GPPIPCKeeper GetKeeper()
    {
        return {cKeeper, [this](const std::vector<GPPIPCMessage>& messages) {
                    if (isFailing)
                        throw GSimpleException(1, "no space"_q);
                    for (const GPPIPCMessage& message : messages) {
                        payloads.push_back(message.payload);
                        places.emplace_back(message.queue, message.position);
                    }
                }};
    }
};

class KeeperTest : public IpcTest
{
protected:
    static constexpr GPPIPCChannelKind cKind = GPPIPCChannelKind::PrinterProcessor;

    const GPPIPCReceiver::Handler mCount = [this](const GPPIPCMessage&) { ++mHandedOver; };
    int mHandedOver = 0;
    const uint32_t mOwnID = GProcessInfo::GetOwnProcessID();
};
}  // namespace

// Registers with a keeper, and takes nothing up until it is killed.
CHILD_ROLE(Sleep)
{
    Kept kept;
    const GPPIPCReceiver receiver([](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
                                  kept.GetKeeper());
    SayToParent("ready");
    HearFromParent();
    return 0;
}

// Where a queue goes with those who have it open, the senders wait for whoever comes after the dead.
TEST_F(KeeperTest, WhatADeadProcessWasPostedGoesToTheNextOneOfItsKeeper)
{
    const auto manager = GPPIPCManager::Get();
    manager->SetPostPolicy({std::chrono::milliseconds(10), std::chrono::milliseconds(20000)});
    ChildProcess dead("Sleep"_q, {});
    ASSERT_EQ(dead.ReadLine(), "ready");
    const uint32_t process = static_cast<uint32_t>(dead.GetProcessID());
    const auto queue = GMessageQueue::Open(GetQueueName(process, 1));
    std::vector<std::thread> senders;
    for (const char* payload : {"first", "second"}) {
        const size_t fill = queue->GetFill();
        senders.emplace_back([&manager, process, payload] {
            EXPECT_EQ(GetErrorCode([&] { manager->Post(process, 145, payload); }), 0);
        });
        while (queue->GetFill() == fill)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    dead.Kill();
    // One of no keeper leaves it alone, as often as it comes, but for that nobody posts to it any more.
    for (int count = 0; count < 2; ++count)
        const GPPIPCReceiver other(mCount);
    EXPECT_EQ(GetErrorCode([&] { queue->Post("too late"); }), GErrorCode::cPostMessage);
    Kept kept;
    kept.isFailing = true;
    {
        GPPIPCReceiver receiver(mCount, cKind, kept.GetKeeper());
        kept.isFailing = false;
        receiver.LookAfterPlaces();
        EXPECT_EQ(kept.payloads, std::vector<GBuffer>({"first", "second"}));
        EXPECT_EQ(kept.places.at(0).first, kept.places.at(1).first);
        EXPECT_LT(kept.places.at(0).second, kept.places.at(1).second);
        EXPECT_EQ(mHandedOver, 0);
    }
    for (std::thread& sender : senders)
        sender.join();
    const GPPIPCReceiver next(mCount, cKind, kept.GetKeeper());
    EXPECT_EQ(kept.payloads.size(), 2U);
    EXPECT_EQ(ListObjects().filter("_%1_"_q.arg(dead.GetProcessID())), QStringList());
}

namespace
{
constexpr std::chrono::milliseconds cLimit(1500);  // of a post
}

// The keeper is never asked, keeps for longer than a post's limit, or fails once; the number of what it has
// kept is told when the sender is done.
CHILD_ROLE(KeepLate)
{
    const QString how = arguments.at(0);
    int calls = 0;
    size_t kept = 0;
    const auto keep = [&](const std::vector<GPPIPCMessage>& messages) {
        if (++calls == 1 && how == "failing"_q)
            throw GSimpleException(1, "no space"_q);
        if (how == "slow"_q)
            std::this_thread::sleep_for(cLimit * 3 / 2);
        kept += messages.size();
    };
    GPPIPCReceiver receiver([](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
                            {cKeeper, keep});
    SayToParent("ready");
    while (calls == 0 && how != "asleep"_q) {
        receiver.TakeUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    HearFromParent();
    receiver.TakeUp();
    SayToParent(QByteArray::number(static_cast<int>(kept)));
    return 0;
}

TEST_F(KeeperTest, OnWindowsWhatIsNotTakenInTimeIsNeverTaken)
{
    if (GSharedSegment::OutlivesItsUsers())
        GTEST_SKIP() << "A message is safe once it is in the queue here.";
    const auto manager = GPPIPCManager::Get();
    manager->SetPostPolicy({std::chrono::milliseconds(10), cLimit});
    const struct
    {
        const char* how;
        int code;
        const char* kept;
    } cases[] = {{"asleep", GErrorCode::cPostMessage, "0"},
                 {"slow", 0, "1"},
                 {"failing", GErrorCode::cPostMessage, "0"}};
    for (const auto& test : cases) {
        ChildProcess late("KeepLate"_q, {QString::fromLatin1(test.how)});
        ASSERT_EQ(late.ReadLine(), "ready");
        const uint32_t process = static_cast<uint32_t>(late.GetProcessID());
        EXPECT_EQ(GetErrorCode([&] { manager->Post(process, 145, "job"); }), test.code) << test.how;
        late.Say("done");
        EXPECT_EQ(late.ReadLine(), test.kept) << test.how;
    }
}

// A process that is short of something can't open the queue for a moment. Here its rights are wrong.
TEST_F(KeeperTest, AQueueThatCannotBeOpenedJustNowIsNeitherRemovedNorForgotten)
{
    ChildProcess dead("Sleep"_q, {});
    ASSERT_EQ(dead.ReadLine(), "ready");
    if (!GSharedSegment::OutlivesItsUsers())
        GTEST_SKIP() << "A queue goes with its users here.";
    const uint32_t process = static_cast<uint32_t>(dead.GetProcessID());
    GPPIPCManager::Get()->Post(process, 145, "accepted");
    dead.Kill();
    const QString queue = GetQueueName(process, 1);
    const QFile::Permissions own = QFile::permissions(queue);
    ASSERT_TRUE(QFile::setPermissions(queue, own | QFile::ReadOther));
    {
        const GPPIPCReceiver other(mCount);
    }
    ASSERT_TRUE(QFileInfo::exists(queue));
    Kept kept;
    GPPIPCReceiver next(mCount, cKind, kept.GetKeeper());
    EXPECT_TRUE(kept.payloads.empty());
    ASSERT_TRUE(QFile::setPermissions(queue, own));
    next.LookAfterPlaces();
    EXPECT_EQ(kept.payloads, std::vector<GBuffer>({"accepted"}));
}

TEST_F(KeeperTest, WhatADeadProcessWasPostedDoesNotNeedItsLock)
{
    if (!GSharedSegment::OutlivesItsUsers())
        GTEST_SKIP() << "A queue goes with its users here.";
    for (const GBuffer& content : {GBuffer("gone"), GBuffer(), GBuffer(64, 'x')}) {
        ChildProcess dead("Sleep"_q, {});
        ASSERT_EQ(dead.ReadLine(), "ready");
        const uint32_t process = static_cast<uint32_t>(dead.GetProcessID());
        GPPIPCManager::Get()->Post(process, 145, "accepted");
        dead.Kill();
        QFile lock(GetQueueName(process, 1) + "_L"_q);
        if (content == "gone")
            ASSERT_TRUE(lock.remove());
        else
            ASSERT_TRUE(WriteFile(lock.fileName(), content));
        {
            const GPPIPCReceiver other(mCount);
        }
        Kept kept;
        const GPPIPCReceiver next(mCount, cKind, kept.GetKeeper());
        EXPECT_EQ(kept.payloads, std::vector<GBuffer>({"accepted"})) << content.size();
    }
}

TEST_F(KeeperTest, WhatIsNotKeptStaysInTheQueue)
{
    const auto manager = GPPIPCManager::Get();
    Kept kept;
    GPPIPCReceiver receiver(mCount, cKind, kept.GetKeeper());
    kept.isFailing = true;
    manager->Post(mOwnID, 1, "a");
    receiver.TakeUp();
    EXPECT_EQ(mHandedOver, 0);
    kept.isFailing = false;
    manager->Post(mOwnID, 1, "b");
    receiver.TakeUp();
    EXPECT_EQ(kept.payloads, std::vector<GBuffer>({"a", "b"}));
    EXPECT_EQ(mHandedOver, 2);
}

TEST_F(KeeperTest, LimitIsKeptExactlyAndTheRestStays)
{
    const auto manager = GPPIPCManager::Get();
    Kept kept;
    {
        GPPIPCReceiver receiver(mCount, cKind, kept.GetKeeper(), 2);
        for (const char* payload : {"1", "2", "3", "4", "5"})
            manager->Post(mOwnID, 1, payload);
        receiver.TakeUp();
        receiver.TakeUp();
    }
    EXPECT_EQ(kept.payloads, std::vector<GBuffer>({"1", "2"}));
    EXPECT_EQ(mHandedOver, 2);
    EXPECT_EQ(ListObjects().filter("_L"_q).size(), ListObjects().isEmpty() ? 0 : 2);  // directory, queue
}

TEST_F(KeeperTest, NobodyTakesOverFromTheLiving)
{
    Kept first;
    Kept second;
    GPPIPCReceiver living(mCount, cKind, first.GetKeeper());
    GPPIPCManager::Get()->Post(mOwnID, 1, "for the first");
    const GPPIPCReceiver other(mCount, cKind, second.GetKeeper());
    living.TakeUp();
    EXPECT_EQ(first.payloads, std::vector<GBuffer>({"for the first"}));
    EXPECT_TRUE(second.payloads.empty());
}
