#include "IpcFixture.h"
#include "KilledParty.h"

#include <QSysInfo>

#include <algorithm>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace
{
constexpr int cPayload = 200;

QStringList GetPosterArguments(uint32_t target, int count)
{
    return {QString::number(target), QString::number(count), QString::number(cPayload)};
}

std::unique_ptr<ChildProcess> StartPoster(uint32_t target, int count)
{
    return std::make_unique<ChildProcess>("Post"_q, GetPosterArguments(target, count));
}

class CrowdTest : public IpcTest
{
};
}  // namespace

TEST_F(CrowdTest, EveryMessageArrivesOnceWholeAndInOrderOrItsSenderKnows)
{
    constexpr int cSenders = 16;
    constexpr int cMessages = 1000;
    QMap<uint32_t, QList<int>> received;
    GPPIPCReceiver receiver([&received](const GPPIPCMessage& message) {
        const QByteArray text = message.payload.left(message.payload.indexOf('.'));
        EXPECT_EQ(message.payload, text + QByteArray(cPayload - text.size(), '.'));
        received[message.process].append(text.toInt());
    });
    std::vector<std::unique_ptr<ChildProcess>> senders;
    for (int sender = 0; sender < cSenders; ++sender)
        senders.push_back(StartPoster(GProcessInfo::GetOwnProcessID(), cMessages));
    for (const auto& sender : senders)
        ASSERT_EQ(sender->ReadLine(), "ready");
    for (const auto& sender : senders)
        sender->Say("go");
    // A pause now and then, so that the queue is full at times.
    std::mt19937 random(20);
    const auto isAnyRunning = [&senders] {
        return std::any_of(senders.cbegin(), senders.cend(),
                           [](const auto& sender) { return sender->IsRunning(); });
    };
    while (isAnyRunning()) {
        receiver.TakeUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
    }
    receiver.TakeUp();
    ASSERT_EQ(received.size(), cSenders);
    for (const auto& sender : senders) {
        QList<QByteArray> failed = sender->ReadLine().split(' ');
        ASSERT_EQ(failed.takeFirst(), "failed");
        QList<int> expected;
        for (int number = 0; number < cMessages; ++number) {
            if (!failed.contains(QByteArray::number(number)))
                expected.append(number);
        }
        EXPECT_EQ(received.value(static_cast<uint32_t>(sender->GetProcessID())), expected);
    }
}

// Two receivers and two posters, one of the four killed at a random moment in each round and replaced.
TEST_F(CrowdTest, ChannelOutlivesTheKillingOfAnybodyAtAnyTime)
{
    // Starting a process takes many times longer under the emulator.
    const int rounds = QSysInfo::kernelType() == QLatin1String("winnt") ? 60 : 1000;
    std::mt19937 random(42);
    std::unique_ptr<KilledParty> receivers[2];
    std::unique_ptr<KilledParty> posters[2];
    for (int round = 0; round < rounds; ++round) {
        const size_t index = random() % 2;
        if (!receivers[index] || random() % 2 == 0)
            receivers[index] = std::make_unique<KilledParty>("Receive"_q, QStringList());
        posters[index] = std::make_unique<KilledParty>(
            "Post"_q, GetPosterArguments(receivers[index]->GetID(), 1000000000));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 5000));
    }
    for (size_t index : {size_t(0), size_t(1)}) {
        posters[index].reset();
        receivers[index].reset();
    }

    ReceivingChild receiver;
    const auto poster = StartPoster(receiver.GetID(), 1);
    poster->Say("go");
    EXPECT_TRUE(receiver.ReadLine().startsWith(QByteArray::number(poster->GetProcessID()) + " 145 0..."));
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(receiver.GetID()), GPPIPCState::Reachable);
}
