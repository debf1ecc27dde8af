#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <atomic>
#include <stdexcept>

namespace
{
struct KeepingLogger : public Morvane::ILogInterface
{
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        lines << "%1 %2: %3"_q.arg(QString::number(static_cast<int>(level)), source, message);
    }

    QStringList lines;
};
}  // namespace

TEST(GTraceTest, EveryAssertCallbackIsCalledThoughOneThrowsOrRemovesItself)
{
    const auto logger = std::make_shared<KeepingLogger>();
    GTrace::SetLogger(logger);
    int calls = 0, second = 0;
    const int first = GTrace::AddAssertCallback([](auto&, auto&) { throw std::runtime_error("no"); });
    const int next = GTrace::AddAssertCallback([](auto&, auto&) { throw 1; });
    second = GTrace::AddAssertCallback([&](auto&, auto&) {
        GTrace::RemoveAssertCallback(second);
        ++calls;
    });
    const int third = GTrace::AddAssertCallback([&](auto&, auto&) { ++calls; });
    for (int i = 0; i < 2; ++i)
        GTrace::Assert("A::b"_q, "gone"_q);
    for (const int number : {first, next, third})
        GTrace::RemoveAssertCallback(number);
    GTrace::Assert("A::b"_q, "last"_q);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(GTrace::SetLogger(nullptr), logger);
    EXPECT_EQ(logger->lines.filter("2 A::b"_q).size(), 3);
}

TEST(GTraceTest, ThreadsTraceWhileLoggersAreExchanged)
{
    std::atomic<int> asserted{0};
    const int number = GTrace::AddAssertCallback([&](auto&, auto&) { ++asserted; });
    RunInThreads(5, [](int thread) {
        for (int line = 0; line < 200; ++line) {
            if (thread == 4) {
                GTrace::SetLogger(line % 2 != 0 ? nullptr : std::make_shared<LogRecorder>());
            } else {
                GTrace::Debug("A::b"_q, "line"_q);
                GTrace::Assert("A::b"_q, "line"_q);
            }
        }
    });
    GTrace::RemoveAssertCallback(number);
    EXPECT_EQ(asserted, 800);
}
