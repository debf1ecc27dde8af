#include "FileHandlerFixture.h"

#include <thread>
#include <vector>

TEST_F(FileHandlerTest, ThreadsThatShareAHandlerNeverGetOneName)
{
    constexpr int cThreads = 8;
    constexpr int cItems = 50;
    const QString place = At("");
    std::vector<QStringList> made(cThreads);
    std::vector<std::thread> threads;
    for (QStringList& names : made) {
        threads.emplace_back([this, &names, &place] {
            for (int item = 0; item < cItems; ++item)
                names.append(mHandler.createTempItem("item"_q, place, true));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QStringList all;
    for (const QStringList& names : made)
        all += names;
    EXPECT_EQ(all.removeDuplicates(), 0);
    EXPECT_EQ(all.size(), cThreads * cItems);
    EXPECT_FALSE(all.contains(QString()));
}

TEST_F(FileHandlerTest, ThreadsRenameInOneFolderAtOnce)
{
    constexpr int cThreads = 8;
    std::vector<std::thread> threads;
    for (int number = 0; number < cThreads; ++number) {
        threads.emplace_back([this, number] {
            const QString name = "file %1"_q.arg(number);
            EXPECT_TRUE(WriteFile(mSandbox.GetPath(name), ""));
            for (int round = 0; round < 50; ++round) {
                EXPECT_TRUE(mHandler.renameAddPrefix(mSandbox.GetPath(name), "x"_q));
                EXPECT_TRUE(
                    mHandler.renameFile(mSandbox.GetPath(QLatin1Char('x') + name), mSandbox.GetPath(name)));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(mHandler.attempts, 0);
}
