#include "foundation/cli/CliStop.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <csignal>

// Takes the first request in, and ends by the second.
CHILD_ROLE(StopTwice)
{
    const CliStop stop;
    if (CliStop::IsAskedFor())
        return 1;
    std::raise(SIGINT);
    SayToParent(CliStop::IsAskedFor() ? "asked" : "not asked");
    std::raise(SIGINT);
    return 0;
}

TEST(CliStopTest, TheFirstRequestIsTakenInAndTheSecondEndsTheProcess)
{
    ChildProcess child("StopTwice"_q, {});
    EXPECT_EQ(child.ReadLine(), "asked");
    EXPECT_EQ(child.WaitForExit(), -1);
}
