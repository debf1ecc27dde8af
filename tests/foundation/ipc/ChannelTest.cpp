#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"

#include <QEventLoop>

namespace
{
class ChannelTest : public IpcTest
{
protected:
    // What the channel's directory says, for tests that damage it.
    std::unique_ptr<GSharedSegment> OpenDirectory() const
    {
        return std::make_unique<GSharedSegment>(GetChannelName(), GPPIPCDirectory::cSize,
                                                GSharedSegment::Mode::Open);
    }

    // Where the first receiver of this process is posted to.
    GString GetOwnQueueName() const
    {
        return GetQueueName(mOwnID, GPPIPCDirectory(OpenDirectory()->GetData()).GetPairs().front().receiver);
    }

    std::vector<GBuffer> mPayloads;
    const GPPIPCReceiver::Handler mKeep = [this](const GPPIPCMessage& message) {
        mPayloads.push_back(message.payload);
    };
    const uint32_t mOwnID = GProcessInfo::GetOwnProcessID();
};
}  // namespace

TEST_F(ChannelTest, EveryRunningReceiverGetsTheMessageAndADeadOneStopsNothing)
{
    const auto manager = GPPIPCManager::Get();
    ReceivingChild dead;
    ReceivingChild first;
    ReceivingChild second;
    dead.Kill();
    ChildProcess idle("Idle"_q, {});
    ASSERT_EQ(idle.ReadLine(), "ready");

    const GBuffer payload = "Gr\u00F6\u00DFe \u65E5"_q.toUtf8();
    for (ReceivingChild* child : {&first, &second}) {
        EXPECT_EQ(manager->GetReceiverState(child->GetID()), GPPIPCState::Reachable);
        manager->Post(child->GetID(), 145, payload);
        EXPECT_EQ(child->ReadLine(), QByteArray::number(mOwnID) + " 145 " + payload);
    }
    EXPECT_EQ(manager->GetReceiverState(dead.GetID()), GPPIPCState::Unreachable);
    EXPECT_EQ(manager->GetReceiverState(static_cast<uint32_t>(idle.GetProcessID())), GPPIPCState::NoReceiver);
    for (const uint32_t process : {dead.GetID(), static_cast<uint32_t>(idle.GetProcessID())})
        EXPECT_EQ(GetErrorCode([&] { manager->Post(process, 145, payload); }), GErrorCode::cPostMessage);

    // A receiver that ends is no receiver any more; the next one that comes removes what the dead one left.
    manager->Post(first.GetID(), 0, "end");
    EXPECT_EQ(first.WaitForExit(), 0);
    EXPECT_EQ(manager->GetReceiverState(first.GetID()), GPPIPCState::NoReceiver);
    ReceivingChild third;
    EXPECT_EQ(manager->GetReceiverState(dead.GetID()), GPPIPCState::NoReceiver);
    for (ReceivingChild* child : {&second, &third}) {
        manager->Post(child->GetID(), 0, "end");
        EXPECT_EQ(child->WaitForExit(), 0);
    }
    EXPECT_EQ(ListObjects(), QStringList());
}

TEST_F(ChannelTest, WhoTakesOtherAddressesOnlyCountsAsNoReceiver)
{
    const auto manager = GPPIPCManager::Get();
    GPPIPCReceiver some(mKeep, GPPIPCChannelKind::PrinterProcessor, {}, GPPIPCReceiver::cNoLimit,
                        GPPIPCAddresses({"Press"_q, "Gr\u00F6\u00DFe"_q}));
    const struct
    {
        const char* address;
        bool isTaken;
    } cases[] = {{"Press", true}, {"Gr\u00F6\u00DFe", true}, {"", true}, {"press", false}, {"Pres", false}};
    for (const auto& test : cases) {
        const GString address = GString::fromUtf8(test.address);
        GResult reason = GResult::Success();
        EXPECT_EQ(manager->GetReceiverState(mOwnID, &reason, address),
                  test.isTaken ? GPPIPCState::Reachable : GPPIPCState::NoReceiver);
        EXPECT_EQ(reason.GetCode(), test.isTaken ? 0 : GErrorCode::cPostMessage);
        EXPECT_EQ(reason.GetReason(),
                  test.isTaken ? GString()
                               : "The process takes messages for \"Press\", \"Gr\u00F6\u00DFe\" only."_q);
        EXPECT_EQ(GetErrorCode([&] { manager->Post(mOwnID, 145, test.address, address); }),
                  test.isTaken ? 0 : GErrorCode::cPostMessage);
    }
    some.TakeUp();
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"Press", "Gr\u00F6\u00DFe", ""}));
    // Of two receivers of a process the one gets it that takes it.
    GPPIPCReceiver all(mKeep);
    manager->Post(mOwnID, 145, "for all", "press"_q);
    some.TakeUp();
    EXPECT_EQ(mPayloads.size(), 3U);
    all.TakeUp();
    EXPECT_EQ(mPayloads.back(), "for all");
    EXPECT_EQ(GetErrorCode([this] {
                  const GPPIPCReceiver endless(mKeep, GPPIPCChannelKind::PrinterProcessor, {},
                                               GPPIPCReceiver::cNoLimit,
                                               GPPIPCAddresses({GString(70000, QLatin1Char('x'))}));
              }),
              GErrorCode::cSegmentHeader);
}

TEST_F(ChannelTest, ReusedProcessNumberIsNotTakenForTheDeadOne)
{
    const auto manager = GPPIPCManager::Get();
    const GPPIPCReceiver first(mKeep);
    ChildProcess other("Idle"_q, {});
    ASSERT_EQ(other.ReadLine(), "ready");
    const uint32_t process = static_cast<uint32_t>(other.GetProcessID());
    // What a process of the same number left when it died.
    const GSharedSegment queue(GetQueueName(process, 1), 1000, GSharedSegment::Mode::CreateNew);
    GMessageRing::Make(queue.GetData(), 1000, {process, GProcessInfo::GetStartTime(process) + 1});
    const GInterProcessMutex lock(GetQueueName(process, 1) + QLatin1String("_L"));
    EXPECT_TRUE(GPPIPCDirectory(OpenDirectory()->GetData()).Add({process, 1}));

    EXPECT_EQ(manager->GetReceiverState(process), GPPIPCState::Unreachable);
    EXPECT_EQ(GetErrorCode([&] { manager->Post(process, 145, "x"); }), GErrorCode::cPostMessage);
    const GPPIPCReceiver receiver(mKeep);
    EXPECT_EQ(manager->GetReceiverState(process), GPPIPCState::NoReceiver);
}

TEST_F(ChannelTest, QueueOfAnotherProcessThanItsNameSaysIsNotPostedTo)
{
    const GPPIPCReceiver receiver(mKeep);
    ChildProcess other("Idle"_q, {});
    ASSERT_EQ(other.ReadLine(), "ready");
    const uint32_t process = static_cast<uint32_t>(other.GetProcessID());
    const GSharedSegment queue(GetOwnQueueName(), 1000, GSharedSegment::Mode::Open);
    GMessageRing::Make(queue.GetData(), 1000, {process, GProcessInfo::GetStartTime(process)});
    GResult reason = GResult::Success();
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(mOwnID, &reason), GPPIPCState::Unreachable);
    EXPECT_EQ(reason.GetCode(), GErrorCode::cSegmentHeader);
}

TEST_F(ChannelTest, PosterThatDiesWithALockBlocksNobody)
{
    const auto manager = GPPIPCManager::Get();
    GPPIPCReceiver receiver(mKeep);
    manager->Post(mOwnID, 1, "first");
    for (const GString& name : {GetChannelName(), GetOwnQueueName()}) {
        ChildProcess poster("HoldLock"_q, {name + QLatin1String("_L")});
        ASSERT_EQ(poster.ReadLine(), "held");
        poster.Kill();
        manager->Post(mOwnID, 1, "next");
    }
    receiver.TakeUp();
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"first", "next", "next"}));
}

TEST_F(ChannelTest, BusyQueueIsRetriedAndThenReported)
{
    using std::chrono::milliseconds;
    const auto manager = GPPIPCManager::Get();
    manager->SetPostPolicy({milliseconds(1), milliseconds(10)});
    GPPIPCReceiver receiver(mKeep);
    EXPECT_EQ(GetErrorCode([&] { manager->Post(mOwnID, 1, GBuffer(300000, 'x')); }),
              GErrorCode::cPostMessage);
    size_t posted = 0;
    while (GetErrorCode([&] { manager->Post(mOwnID, 1, GBuffer(10000, 'x')); }) == 0)
        ++posted;
    EXPECT_EQ(posted, 26U);  // of 10,028 bytes in 262,144
    receiver.TakeUp();
    EXPECT_EQ(mPayloads.size(), posted);

    ChildProcess holder("HoldLock"_q, {GetOwnQueueName() + QLatin1String("_L")});
    ASSERT_EQ(holder.ReadLine(), "held");
    EXPECT_EQ(GetErrorCode([&] { manager->Post(mOwnID, 1, "x"); }), GErrorCode::cPostMessage);
    manager->SetPostPolicy({milliseconds(1), milliseconds(30000)});
    holder.Say("let go");
    manager->Post(mOwnID, 1, "after");
    receiver.TakeUp();
    EXPECT_EQ(mPayloads.back(), "after");
}

TEST_F(ChannelTest, DamagedDirectoryIsAnErrorUntilAReceiverComesAndGarbagePairsAreNone)
{
    const auto manager = GPPIPCManager::Get();
    GPPIPCReceiver receiver(mKeep);
    const auto directory = OpenDirectory();
    uint32_t* const words = reinterpret_cast<uint32_t*>(directory->GetData());
    for (uint32_t index = words[2]; index < GPPIPCDirectory::cMostPairs; ++index) {
        words[3 + 2 * index] = index * 2654435761U;
        words[4 + 2 * index] = index % 5 == 0 ? 0xFFFFFFFF : index;
    }
    words[2] = GPPIPCDirectory::cMostPairs;
    manager->Post(mOwnID, 1, "past the garbage");
    GPPIPCReceiver second(mKeep);
    EXPECT_LT(words[2], 10U);
    receiver.TakeUp();
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"past the garbage"}));

    const uint32_t count = words[2];
    words[2] = GPPIPCDirectory::cMostPairs + 1;
    EXPECT_EQ(GetErrorCode([&] { manager->GetReceiverState(mOwnID); }), GErrorCode::cSegmentHeader);
    EXPECT_EQ(GetErrorCode([&] { manager->Post(mOwnID, 1, "x"); }), GErrorCode::cSegmentHeader);
    const GPPIPCReceiver third(mKeep);  // makes it anew
    receiver.LookAfterPlaces();
    second.LookAfterPlaces();
    EXPECT_GE(words[2], count);
    manager->Post(mOwnID, 1, "to all three");
    receiver.TakeUp();
    EXPECT_EQ(mPayloads.back(), "to all three");
}

TEST_F(ChannelTest, ReceiverHandsOverWhatIsThereWhenItEnds)
{
    const auto manager = GPPIPCManager::Get();
    {
        const GPPIPCReceiver receiver(mKeep);
        manager->Post(mOwnID, 1, "late");
    }
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"late"}));
    EXPECT_EQ(manager->GetReceiverState(mOwnID), GPPIPCState::NoReceiver);
    EXPECT_EQ(ListObjects(), QStringList());
}

TEST_F(ChannelTest, OneBadMessageOrHandlerCostsNoOther)
{
    const auto manager = GPPIPCManager::Get();
    GPPIPCReceiver* inner = nullptr;
    GPPIPCReceiver receiver([&](const GPPIPCMessage& message) {
        mPayloads.push_back(message.payload);
        inner->TakeUp();  // as an event loop in the handler would
        if (message.payload == "bad")
            throw GSimpleException(1, "bad"_q);
        if (message.payload == "worse")
            throw 1;
    });
    inner = &receiver;
    GMessageQueue::Open(GetOwnQueueName())->Post("no message");
    for (const char* payload : {"bad", "worse", "last"})
        manager->Post(mOwnID, 1, payload);
    receiver.TakeUp();
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"bad", "worse", "last"}));
}

TEST_F(ChannelTest, MessagesAreTakenUpOnTheTick)
{
    const auto manager = GPPIPCManager::Get();
    QEventLoop loop;
    const GPPIPCReceiver receiver([&](const GPPIPCMessage& message) {
        mPayloads.push_back(message.payload);
        loop.quit();
    });
    GMessageLoop::Start(1000000);  // the message itself brings the tick
    manager->Post(mOwnID, 1, "on the tick");
    loop.exec();
    GMessageLoop::Stop();
    EXPECT_EQ(mPayloads, std::vector<GBuffer>({"on the tick"}));
}
