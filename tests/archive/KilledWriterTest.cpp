#include "ZipSamples.h"
#include "tests/support/ChildProcess.h"

#include <QThread>

#include <random>

using namespace Morvane;

static constexpr int cUsualRounds = 10;
static constexpr int cLongestLife = 80;  // milliseconds; about what the child needs for one archive

static int GetRounds()
{
    const int rounds = qEnvironmentVariableIntValue("HOPBOX_KILL_ROUNDS");
    return rounds > 0 ? rounds : cUsualRounds;
}

static QMap<QString, QByteArray> MakeTree(char mark)
{
    QByteArray noise;
    for (uint number = static_cast<uint>(mark); noise.size() < 400000; number = number * 1103515245 + 12345)
        noise += static_cast<char>(number >> 16);
    return {{"noise"_q, noise}, {"folder/"_q, ""}, {"folder/text"_q, QByteArray(5000, mark)}};
}

// Makes the archive of one tree and of the other in turns, until it is killed.
CHILD_ROLE(MakeArchivesForEver)
{
    const QString root = arguments.first();
    SayToParent("begins");
    for (int round = 0;; ++round) {
        const QString tree = root + (round % 2 == 0 ? "/one"_q : "/two"_q);
        if (!ZipHelper::compressFolderContents(tree, root + "/archive.zip"_q, ZipStart::Create, QString(), 1,
                                               ZipNames::Plain))
            return 1;
    }
}

TEST_F(ArchiveTest, AKilledWriterLeavesAWholeArchiveAndNothingThatStays)
{
    const QMap<QString, QByteArray> one = MakeTree('1');
    const QMap<QString, QByteArray> two = MakeTree('2');
    WriteTree(mSandbox.GetPath("one"_q), one);
    WriteTree(mSandbox.GetPath("two"_q), two);
    const auto make = [this] {
        return ZipHelper::compressFolderContents(mSandbox.GetPath("one"_q), mArchive, ZipStart::Create,
                                                 QString(), 1, ZipNames::Plain);
    };
    ASSERT_TRUE(make());
    std::mt19937 random(11);
    for (int round = 0; round < GetRounds(); ++round) {
        ChildProcess child("MakeArchivesForEver"_q, {mSandbox.GetPath()});
        ASSERT_EQ("begins", child.ReadLine());
        QThread::msleep(random() % cLongestLife);
        child.Kill();
        ASSERT_TRUE(Extract()) << round;
        const QMap<QString, QByteArray> tree = ReadTree(mTarget);
        ASSERT_TRUE(tree == one || tree == two) << round;
        QDir(mTarget).removeRecursively();
    }
    ASSERT_TRUE(make());
    const QStringList names = "archive.zip|one|two"_list;
    EXPECT_EQ(names, ListFolder(mSandbox.GetPath())) << "the next one sweeps";
}
