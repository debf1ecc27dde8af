#include "foundation/core/GMessageLoop.h"
#include "foundation/core/GSignal.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace
{
using Signal = GSignal<std::string>;

// A receiver that is a function.
template <typename Data>
class Receiver : public GReceiver<Data>
{
public:
    explicit Receiver(std::function<void(int32_t, const Data&)> function) : receive(std::move(function)) {}
    ~Receiver() override { this->DetachFromAll(); }
    void Receive(int32_t message, const Data& data) override { receive(message, data); }

    const std::function<void(int32_t, const Data&)> receive;
};

// Writes its name, the message and the data down, then does what the test says, once.
class Recorder : public Receiver<std::string>
{
public:
    Recorder(std::string& record, char name)
        : Receiver([this, &record, name](int32_t message, const std::string& data) {
              record += name + std::to_string(message) + data + ' ';
              if (const auto act = std::exchange(onReceive, nullptr))
                  act();
          })
    {
    }

    std::function<void()> onReceive;
};

// Runs Qt's event loop until the condition holds; false after 20 s.
bool RunUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 20000;)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}
}  // namespace

// Each case says what the first of the receivers a, b and c does when it gets 1; then 2 is emitted, then what
// is delayed is delivered. a, b and c are made anew for each case.
TEST(GSignal, ReceiversComeAndGoDuringAnEmission)
{
    std::string record;
    std::unique_ptr<Signal> signal;
    std::unique_ptr<Recorder> a, b, c, late;
    const std::tuple<const char*, std::function<void()>, std::string, std::string> cases[] = {
        {"nothing", [] {}, "a1x b1x c1x a2y b2y c2y ", "a1x b1x c1x a2y b2y c2y "},
        {"detaches itself", [&] { signal->Detach(*a); }, "a1x b1x c1x b2y c2y ", "b1x c1x b2y c2y "},
        {"ends the next", [&] { b.reset(); }, "a1x c1x a2y c2y ", "a1x c1x a2y c2y "},
        {"attaches one", [&] { signal->Attach(*late); }, "a1x b1x c1x a2y b2y c2y d2y ",
         "a1x b1x c1x d1x a2y b2y c2y d2y "},
        {"emits, the lock being its own", [&] { signal->Emit(3, "z"); },
         "a1x a3z b3z c3z b1x c1x a2y b2y c2y ", "a3z b3z c3z a1x b1x c1x a2y b2y c2y "},
        {"emits the same message: the last one counts", [&] { signal->Emit(2, "old"); },
         "a1x a2old b2old c2old b1x c1x a2y b2y c2y ", "a1x b1x c1x a2y b2y c2y "},
        {"throws", [] { throw std::runtime_error("refused"); }, "a1x a2y b2y c2y ", "a2y b2y c2y "},
        {"ends the signal", [&] { signal.reset(); }, "a1x ", ""},
    };
    for (const auto& [what, act, now, delayed] : cases) {
        signal = std::make_unique<Signal>();
        signal->SetDelayed(true);
        char name = 'a';
        for (auto* receiver : {&a, &b, &c, &late}) {
            *receiver = std::make_unique<Recorder>(record, name++);
            if (receiver != &late)
                signal->Attach(**receiver);
        }
        record.clear();
        a->onReceive = act;
        try {
            signal->Emit(1, "x");
        } catch (const std::runtime_error&) {
        }
        if (signal)
            signal->Emit(2, "y");
        EXPECT_EQ(record, now) << what;
        record.clear();
        GMessageLoop::DeliverQueued();
        EXPECT_EQ(record, delayed) << what;
        record.clear();
        GMessageLoop::DeliverQueued();
        EXPECT_EQ(record, "") << what;
    }
}

TEST(GSignal, DelayedMessagesSkipWhoEndsBeforeTheDelivery)
{
    std::string record;
    Signal signal;
    auto ending = std::make_unique<Signal>();
    for (Signal* each : {&signal, ending.get()})
        each->SetDelayed(true);
    Recorder a(record, 'a');
    auto b = std::make_unique<Recorder>(record, 'b');
    auto c = std::make_unique<Recorder>(record, 'c');
    for (Recorder* receiver : {&a, b.get(), c.get()}) {
        signal.Attach(*receiver);
        ending->Attach(*receiver);
    }
    ending->Emit(1, "lost");
    signal.Emit(2, "copy");
    record.clear();
    ending.reset();
    b.reset();
    a.onReceive = [&] {
        c.reset();
        signal.Emit(3, "next time");
    };
    GMessageLoop::DeliverQueued();
    EXPECT_EQ(record, "a2copy a3next time ");
    GMessageLoop::DeliverQueued();
    EXPECT_EQ(record, "a2copy a3next time a3next time ");
}

TEST(GSignal, EmissionsOfManyThreadsComeOneByOne)
{
    GSignal<int> signal;
    signal.SetDelayed(true);
    int count = 0;  // guarded by the signal's lock alone
    std::atomic<int> inside{0};
    std::atomic<bool> wereTwoInside{false};
    Receiver<int> lasting([&](int32_t, int) {
        if (++inside != 1)
            wereTwoInside = true;
        ++count;
        --inside;
    });
    signal.Attach(lasting);
    RunInThreads(4, [&](int) {
        for (int emission = 0; emission < 2000; ++emission) {
            Receiver<int> passing([](int32_t, int) {});
            signal.Attach(passing);
            signal.Emit(emission % 3, emission);
            if (emission % 16 == 0)
                GMessageLoop::DeliverQueued();
        }
    });
    EXPECT_GE(count, 4 * 2000);
    EXPECT_FALSE(wereTwoInside);
}

// Waits on Qt's event loop, which the thread sanitizer can't see into.
TEST(GMessageLoopEvents, DeliversAndTicksWhileItRuns)
{
    std::string record;
    Signal signal;
    signal.SetDelayed(true);
    Recorder receiver(record, 'a');
    signal.Attach(receiver);
    std::vector<uint64_t> ticks;
    Receiver<GTick> counter([&](int32_t message, const GTick& tick) {
        EXPECT_EQ(message, 101);
        ticks.push_back(tick.number);
        if (ticks.size() == 1)
            throw std::runtime_error("The loop goes on.");
    });
    GMessageLoop::GetTickSignal().Attach(counter);

    signal.Emit(1, "before");
    record.clear();
    GMessageLoop::Start(1);
    EXPECT_TRUE(RunUntil([&] { return ticks.size() >= 3; }));
    EXPECT_EQ(record, "a1before ");
    EXPECT_EQ(ticks[2], 2U);

    record.clear();
    std::thread([&] { signal.Emit(2, "other thread"); }).join();
    EXPECT_TRUE(RunUntil([&] { return record == "a2other thread a2other thread "; })) << record;

    GMessageLoop::Stop();
    const size_t count = ticks.size();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(ticks.size(), count);
}
