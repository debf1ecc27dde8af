#include "foundation/core/GMessageLoop.h"
#include "foundation/core/GSignal.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{
using Signal = GSignal<std::string>;

// Writes its name, the message and the data down, then does what the test says.
class Recorder : public GReceiver<std::string>
{
public:
    Recorder(std::string& record, char name) : mRecord(record), mName(name) {}

    void Receive(int32_t message, const std::string& data) override
    {
        mRecord += mName + std::to_string(message) + data + ' ';
        if (const auto act = onReceive)  // a copy: it may replace itself
            act();
    }

    std::function<void()> onReceive;

private:
    std::string& mRecord;
    char mName;
};

// Runs Qt's event loop until the condition holds; false after 20 s.
bool RunUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    for (timer.start(); !condition() && timer.elapsed() < 20000;)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return condition();
}

// Counts, and remembers whether two threads were ever inside at once.
class Counter : public GReceiver<int>
{
public:
    ~Counter() override { DetachFromAll(); }

    void Receive(int32_t, const int&) override
    {
        const int inside = ++mInside;
        if (inside != 1)
            wereTwoInside = true;
        ++count;
        --mInside;
    }

    int count = 0;  // guarded by the signal's lock alone
    std::atomic<bool> wereTwoInside{false};

private:
    std::atomic<int> mInside{0};
};

class TickCounter : public GReceiver<GTick>
{
public:
    void Receive(int32_t message, const GTick& tick) override
    {
        messages.push_back(message);
        numbers.push_back(tick.number);
        if (messages.size() == 1)
            throw std::runtime_error("The loop goes on.");
    }

    std::vector<int32_t> messages;
    std::vector<uint64_t> numbers;
};
}  // namespace

// Each case says what the first of the receivers a, b and c does when it gets 1; then 2 is emitted, then what
// is delayed is delivered. a, b and c are made anew for each case.
TEST(GSignal, ReceiversComeAndGoDuringAnEmission)
{
    std::string record;
    std::unique_ptr<Signal> signal;
    std::unique_ptr<Recorder> a, b, c, late;
    const struct
    {
        const char* what;
        std::function<void()> act;
        std::string record;
        std::string delayedRecord;
    } cases[] = {
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
    for (const auto& testCase : cases) {
        signal = std::make_unique<Signal>();
        signal->SetDelayed(true);
        char name = 'a';
        for (auto* receiver : {&a, &b, &c, &late}) {
            *receiver = std::make_unique<Recorder>(record, name++);
            if (receiver != &late)
                signal->Attach(**receiver);
        }
        record.clear();
        a->onReceive = [&] {
            a->onReceive = nullptr;
            testCase.act();
        };
        try {
            signal->Emit(1, "x");
        } catch (const std::runtime_error&) {
        }
        if (signal)
            signal->Emit(2, "y");
        EXPECT_EQ(record, testCase.record) << testCase.what;
        record.clear();
        GMessageLoop::DeliverQueued();
        EXPECT_EQ(record, testCase.delayedRecord) << testCase.what;
        record.clear();
        GMessageLoop::DeliverQueued();
        EXPECT_EQ(record, "") << testCase.what;
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
        a.onReceive = nullptr;
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
    constexpr int cThreads = 4;
    constexpr int cEmissions = 2000;
    GSignal<int> signal;
    signal.SetDelayed(true);
    Counter lasting;
    signal.Attach(lasting);
    std::vector<std::thread> threads;
    for (int number = 0; number < cThreads; ++number) {
        threads.emplace_back([&] {
            for (int emission = 0; emission < cEmissions; ++emission) {
                Counter passing;
                signal.Attach(passing);
                signal.Emit(emission % 3, emission);
                if (emission % 16 == 0)
                    GMessageLoop::DeliverQueued();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(lasting.count, cThreads * cEmissions);
    EXPECT_FALSE(lasting.wereTwoInside);
}

// Waits on Qt's event loop, which the thread sanitizer can't see into.
TEST(GMessageLoopEvents, DeliversAndTicksWhileItRuns)
{
    std::string record;
    Signal signal;
    signal.SetDelayed(true);
    Recorder receiver(record, 'a');
    signal.Attach(receiver);
    TickCounter ticks;
    GMessageLoop::GetTickSignal().Attach(ticks);

    signal.Emit(1, "before");
    record.clear();
    GMessageLoop::Start(1);
    EXPECT_TRUE(RunUntil([&] { return ticks.messages.size() >= 3; }));
    EXPECT_EQ(record, "a1before ");
    EXPECT_EQ(ticks.messages, std::vector<int32_t>(ticks.messages.size(), 101));
    EXPECT_EQ(ticks.numbers[2], 2u);

    record.clear();
    std::thread([&] { signal.Emit(2, "other thread"); }).join();
    EXPECT_TRUE(RunUntil([&] { return record == "a2other thread a2other thread "; })) << record;

    GMessageLoop::Stop();
    const size_t count = ticks.messages.size();
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    EXPECT_EQ(ticks.messages.size(), count);
}
