#include "foundation/system/GBoundProcess.h"
#include "foundation/system/GProcessInfo.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QCoreApplication>

#include <chrono>
#include <thread>

CHILD_ROLE(RunOn)
{
    SayToParent(QByteArray::number(GProcessInfo::GetOwnProcessID()));
    std::this_thread::sleep_for(std::chrono::hours(1));
    return 0;
}

CHILD_ROLE(StartBound)
{
    GBoundProcess process(arguments.first() == "force"_q ? GBoundProcess::Ending::cByForce
                                                         : GBoundProcess::Ending::cByRequest);
    if (!process.Start(QCoreApplication::applicationFilePath(), {"--child"_q, "RunOn"_q}))
        return 1;
    while (!process.canReadLine() && process.waitForReadyRead(-1))
        ;
    SayToParent(process.readLine().trimmed());
    HearFromParent();
    return 0;
}

TEST(GBoundProcess, ProgramEndsWithTheProcessThatStartedIt)
{
    for (const char* ending : {"request", "force"}) {
        ChildProcess starter("StartBound"_q, {QLatin1String(ending)});
        const uint32_t program = starter.ReadLine().toUInt();
        ASSERT_NE(program, 0U);
        EXPECT_TRUE(GProcessInfo::IsAlive(program));
        starter.Kill();
        for (int look = 0; look < 1000 && GProcessInfo::IsAlive(program); ++look)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_FALSE(GProcessInfo::IsAlive(program)) << ending;
    }
}

TEST(GBoundProcess, WhatCannotBeStartedHasAReason)
{
    GBoundProcess process(GBoundProcess::Ending::cByForce);
    EXPECT_FALSE(process.Start("/no such program"_q, {}));
    EXPECT_FALSE(process.errorString().isEmpty());
}
