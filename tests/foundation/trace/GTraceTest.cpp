#include "foundation/trace/GTrace.h"
#include "foundation/trace/GTraceBlock.h"
#include "tests/support/LogRecorder.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{
struct KeepingLogger : public Morvane::ILogInterface
{
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        lines << QStringLiteral("%1 %2: %3").arg(QString::number(static_cast<int>(level)), source, message);
    }

    QStringList lines;
};
}  // namespace

TEST(GTraceTest, BlockTracesItsTimeWhicheverWayItIsLeft)
{
    const auto logger = std::make_shared<KeepingLogger>();
    GTrace::SetLogger(logger);
    try {
        const GTraceBlock block(QStringLiteral("A::b"));
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(GTrace::SetLogger(nullptr), logger);
    GTrace::Error(QStringLiteral("A::b"), QStringLiteral("nobody listens"));
    const GString lines = logger->lines.join(QLatin1Char('|'));
    const QRegularExpression form(QStringLiteral("^0 A::b: enter\\|0 A::b: leave, [0-9]+\\.[0-9]{3} ms$"));
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
        GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("gone"));
    for (const int number : {first, next, third})
        GTrace::RemoveAssertCallback(number);
    GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("last"));
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(GTrace::SetLogger(nullptr), logger);
    EXPECT_EQ(logger->lines.filter(QStringLiteral("2 A::b")).size(), 3);
}

TEST(GTraceTest, ThreadsTraceWhileLoggersAreExchanged)
{
    std::atomic<int> asserted{0};
    const int number = GTrace::AddAssertCallback([&](auto&, auto&) { ++asserted; });
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line < 200; ++line) {
                GTrace::Debug(QStringLiteral("A::b"), QStringLiteral("line"));
                GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("line"));
            }
        });
    }
    for (int i = 0; i < 200; ++i)
        GTrace::SetLogger(i % 2 != 0 ? nullptr : std::make_shared<LogRecorder>());
    for (std::thread& thread : threads)
        thread.join();
    GTrace::RemoveAssertCallback(number);
    EXPECT_EQ(asserted, 800);
}
