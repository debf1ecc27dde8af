#include "foundation/trace/GTrace.h"
#include "foundation/trace/GTraceBlock.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <QRegularExpression>

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

TEST(GTraceTest, BlockTracesItsTimeWhicheverWayItIsLeft)
{
    const auto logger = std::make_shared<KeepingLogger>();
    GTrace::SetLogger(logger);
    try {
        const GTraceBlock block("A::b"_q);
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(GTrace::SetLogger(nullptr), logger);
    GTrace::Error("A::b"_q, "nobody listens"_q);
    const GString lines = logger->lines.join(QLatin1Char('|'));
    const QRegularExpression form("^0 A::b: enter\\|0 A::b: leave, [0-9]+\\.[0-9]{3} ms$"_q);
    EXPECT_TRUE(form.match(lines).hasMatch()) << lines.toStdString();
}

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
