#include "FileHandlerFixture.h"
#include "tests/support/Threads.h"

TEST_F(FileHandlerTest, ThreadsThatShareAHandlerNeverGetOneName)
{
    const QString place = mSandbox.GetPath();
    RunInThreads(8, [&](int) {
        for (int item = 0; item < 50; ++item)
            EXPECT_NE(mHandler.createTempItem("item"_q, place, true), QString());
    });
    EXPECT_EQ(ReadTree(place).size(), 8 * 50);
}

TEST_F(FileHandlerTest, ThreadsRenameInOneFolderAtOnce)
{
    RunInThreads(8, [this](int number) {
        const QString name = QString::number(number);
        EXPECT_TRUE(WriteFile(mSandbox.GetPath(name), ""));
        for (int round = 0; round < 50; ++round) {
            EXPECT_TRUE(mHandler.renameAddPrefix(mSandbox.GetPath(name), "x"_q));
            EXPECT_TRUE(mHandler.renameFile(mSandbox.GetPath("x"_q + name), mSandbox.GetPath(name)));
        }
    });
    EXPECT_EQ(mHandler.attempts, 0);
}
