#include "IpcFixture.h"

#include <map>
#include <thread>
#include <vector>

TEST_F(IpcTest, ThreadsPostToOneReceiverInOrder)
{
    constexpr int cThreads = 6;
    constexpr int cMessages = 300;
    const auto manager = GPPIPCManager::Get();
    std::map<int, std::vector<int>> received;
    GPPIPCReceiver receiver([&received](const GPPIPCMessage& message) {
        received[message.kind].push_back(message.payload.toInt());
    });
    std::vector<std::thread> threads;
    std::atomic<int> running{cThreads};
    for (int thread = 0; thread < cThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (int number = 0; number < cMessages; ++number)
                manager->Post(GProcessInfo::GetOwnProcessID(), thread, QByteArray::number(number));
            --running;
        });
    }
    while (running > 0)
        receiver.TakeUp();
    for (std::thread& thread : threads)
        thread.join();
    receiver.TakeUp();
    ASSERT_EQ(received.size(), size_t(cThreads));
    for (const auto& sender : received) {
        ASSERT_EQ(sender.second.size(), size_t(cMessages));
        for (int number = 0; number < cMessages; ++number)
            EXPECT_EQ(sender.second[static_cast<size_t>(number)], number);
    }
}
