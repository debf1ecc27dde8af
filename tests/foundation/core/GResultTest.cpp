#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GResult.h"
#include "tests/support/Test.h"

TEST(GResult, NothingRunsAfterAFailureAndItsReasonIsTheLastWord)
{
    QStringList steps;
    const auto step = [&](const QString& name, const GResult& result) {
        return [&steps, name, result] {
            steps.append(name);
            return result;
        };
    };
    const GResult failed = GResult::Success()
                               .Then(step("one"_q, GResult::Success()))
                               .Then(step("two"_q, GResult::Failure("no 100%2 rights"_q, 40089)))
                               .Then(step("three"_q, GResult::Failure("late"_q)))
                               .Within("50%1.sla can't be read: "_q, "."_q);
    EXPECT_EQ(steps, "one|two"_list);
    EXPECT_FALSE(failed.HasSucceeded() || failed.WasCancelled());
    EXPECT_EQ(failed.GetReason(), "50%1.sla can't be read: no 100%2 rights."_q);
    EXPECT_EQ(failed.GetCode(), 40089);

    EXPECT_EQ(GResult::Success().Within("a"_q, "b"_q).GetReason(), QString());
    const GResult cancelled =
        GResult::Cancellation().Then(step("four"_q, GResult::Success())).Within("a"_q, "b"_q);
    EXPECT_TRUE(cancelled.WasCancelled() && !cancelled.HasSucceeded());
    EXPECT_EQ(steps.size(), 2);
}

TEST(GResult, WhatAStepRaisesBecomesAFailure)
{
    EXPECT_TRUE(GResult::Catch([] {}).HasSucceeded());
    const GResult caught = GResult::Catch([] { throw GCustomException(GErrorCode::cFile, "no room"_q); });
    EXPECT_EQ(caught.GetReason(), "no room"_q);
    EXPECT_EQ(caught.GetCode(), GErrorCode::cFile);
}
