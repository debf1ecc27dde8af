#include "Ratios.h"

#include "foundation/ipc/GMessageQueue.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSessionInfo.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <boost/interprocess/ipc/message_queue.hpp>

#include <dirent.h>
#include <mqueue.h>
#include <unistd.h>
#include <climits>
#include <cstring>
#include <string>

// A message of 1 KB through shared memory and out again, beside POSIX's and Boost's queues, which is what a
// queue costs that is open; then the whole of what a hand-off does; and the list of processes of an image
// name.
namespace
{
constexpr int cMessageSize = 1024;
constexpr long cPeerMessages = 10;

const GBuffer& GetPayload()
{
    static const GBuffer payload(cMessageSize, 'x');
    return payload;
}

void PostToOpenQueue(benchmark::State& state)
{
    const GString name = GSessionInfo::GetObjectNamePrefix() + QLatin1String("bench");
    {
        const auto own = GMessageQueue::Create(name, 262144);
        const auto others = GMessageQueue::Open(name);
        for (auto _ : state) {
            others->Post(GetPayload());
            const auto taken = own->Peek();
            if (taken.size() != 1)
                state.SkipWithError("no message");
            own->Forget(taken.back());
        }
    }
    GMessageQueue::Remove(name);
}
BENCHMARK(PostToOpenQueue);

void PostToPosixQueue(benchmark::State& state)
{
    const std::string name = "/hopbox_bench_" + std::to_string(::getpid());
    mq_attr attributes = {};
    attributes.mq_maxmsg = cPeerMessages;
    attributes.mq_msgsize = cMessageSize;
    const mqd_t queue = ::mq_open(name.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600, &attributes);
    char buffer[cMessageSize];
    for (auto _ : state) {
        if (::mq_send(queue, GetPayload().constData(), cMessageSize, 0) != 0 ||
            ::mq_receive(queue, buffer, sizeof buffer, nullptr) != cMessageSize) {
            state.SkipWithError(std::strerror(errno));
            break;
        }
        const GBuffer taken(buffer, cMessageSize);
        benchmark::DoNotOptimize(taken.constData());
    }
    ::mq_close(queue);
    ::mq_unlink(name.c_str());
}
BENCHMARK(PostToPosixQueue);

void PostToBoostQueue(benchmark::State& state)
{
    using boost::interprocess::message_queue;
    const std::string name = "hopbox_bench_" + std::to_string(::getpid());
    {
        message_queue queue(boost::interprocess::create_only, name.c_str(), cPeerMessages, cMessageSize);
        char buffer[cMessageSize];
        for (auto _ : state) {
            size_t size = 0;
            unsigned priority = 0;
            queue.send(GetPayload().constData(), cMessageSize, 0);
            queue.receive(buffer, sizeof buffer, size, priority);
            const GBuffer taken(buffer, cMessageSize);
            benchmark::DoNotOptimize(taken.constData());
        }
    }
    message_queue::remove(name.c_str());
}
BENCHMARK(PostToBoostQueue);

// What a hand-off does for each process: is it reachable, then post; and what the receiver does.
void CheckPostAndTakeUp(benchmark::State& state)
{
    const auto manager = GPPIPCManager::Get();
    const uint32_t process = GProcessInfo::GetOwnProcessID();
    int taken = 0;
    GPPIPCReceiver receiver([&taken](const GPPIPCMessage&) { ++taken; });
    for (auto _ : state) {
        if (manager->GetReceiverState(process) == GPPIPCState::Reachable)
            manager->Post(process, 145, GetPayload());
        receiver.TakeUp();
    }
    if (taken != state.iterations())
        state.SkipWithError("a message was lost");
}
BENCHMARK(CheckPostAndTakeUp);

void ListProcessesByImageName(benchmark::State& state)
{
    size_t found = 0;
    for (auto _ : state)
        found += GProcessInfo::GetProcessIDs(QStringLiteral("bench_ipc")).size();
    if (found == 0)
        state.SkipWithError("not found");
}
BENCHMARK(ListProcessesByImageName);

// The least that any such list needs of the system.
void ReadEveryImageName(benchmark::State& state)
{
    for (auto _ : state) {
        DIR* const processes = ::opendir("/proc");
        while (const dirent* const entry = ::readdir(processes)) {
            char image[PATH_MAX];
            const std::string link = std::string("/proc/") + entry->d_name + "/exe";
            if (std::strspn(entry->d_name, "0123456789") == std::strlen(entry->d_name))
                benchmark::DoNotOptimize(::readlink(link.c_str(), image, sizeof image));
        }
        ::closedir(processes);
    }
}
BENCHMARK(ReadEveryImageName);
}  // namespace

int main(int argc, char** argv)
{
    // Names of its own: no user's receiver gets these messages.
    const QTemporaryDir root;
    qputenv("MORVANE_ROOT", root.path().toLocal8Bit());
    return RunBenchmarks(
        argc, argv,
        {{"PostToOpenQueue", "PostToPosixQueue", "post and take 1 KB, queue open, beside mq_send"},
         {"PostToOpenQueue", "PostToBoostQueue", "post and take 1 KB, queue open, beside Boost.Interprocess"},
         {"CheckPostAndTakeUp", "PostToOpenQueue", "check, post and take 1 KB beside the open queue alone"},
         {"ListProcessesByImageName", "ReadEveryImageName", "list by image name beside reading every name"}});
}
