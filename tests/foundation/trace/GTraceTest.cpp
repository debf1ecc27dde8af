#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <atomic>

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
