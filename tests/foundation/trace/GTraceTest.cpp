#include "foundation/trace/GTrace.h"
#include "foundation/trace/GTraceBlock.h"

#include <QRegularExpression>
#include <QStringList>

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{
class KeepingLogger : public Morvane::ILogInterface
{
public:
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        mLines << QStringLiteral("%1 %2: %3").arg(QString::number(static_cast<int>(level)), source, message);
    }
    QStringList TakeLines()
    {
        const std::lock_guard<std::mutex> guard(mMutex);
        return std::move(mLines);
    }

private:
    std::mutex mMutex;
    QStringList mLines;
};

class GTraceTest : public testing::Test
{
protected:
    void SetUp() override { GTrace::SetLogger(mLogger); }
    void TearDown() override { GTrace::SetLogger(nullptr); }

    std::shared_ptr<KeepingLogger> mLogger = std::make_shared<KeepingLogger>();
};
}  // namespace

TEST_F(GTraceTest, BlockTracesItsTimeWhicheverWayItIsLeft)
{
    try {
        const GTraceBlock block(QStringLiteral("A::b"));
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(GTrace::SetLogger(nullptr), mLogger);
    GTrace::Error(QStringLiteral("A::b"), QStringLiteral("nobody listens"));
    const QStringList lines = mLogger->TakeLines();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.at(0), QStringLiteral("0 A::b: enter"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^0 A::b: leave, [0-9]+\\.[0-9]{3} ms$"))
                    .match(lines.at(1))
                    .hasMatch())
        << lines.at(1).toStdString();
}

TEST_F(GTraceTest, EveryAssertCallbackIsCalledThoughOneThrowsOrRemovesItself)
{
    int calls = 0;
    int second = 0;
    const int first = GTrace::AddAssertCallback([](auto&, auto&) { throw std::runtime_error("no"); });
    second = GTrace::AddAssertCallback([&](auto&, auto&) {
        GTrace::RemoveAssertCallback(second);
        ++calls;
    });
    const int third = GTrace::AddAssertCallback([&](auto&, auto&) { ++calls; });
    GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("gone"));
    GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("again"));
    GTrace::RemoveAssertCallback(first);
    GTrace::RemoveAssertCallback(third);
    GTrace::Assert(QStringLiteral("A::b"), QStringLiteral("last"));
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(mLogger->TakeLines().filter(QStringLiteral("2 A::b")).size(), 3);
}

TEST_F(GTraceTest, ThreadsTraceWhileLoggersAreExchanged)
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
        GTrace::SetLogger(i % 2 == 0 ? nullptr : std::make_shared<KeepingLogger>());
    for (std::thread& thread : threads)
        thread.join();
    GTrace::RemoveAssertCallback(number);
    EXPECT_EQ(asserted, 800);
}
