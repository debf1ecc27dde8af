#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <chrono>
#include <random>
#include <thread>

static constexpr int cSenders = 4;
static constexpr int cJobSize = 5 * 1024 * 1024;

// So many in the nightly run.
static int GetRounds()
{
    const int rounds = qEnvironmentVariableIntValue("HOPBOX_KILL_ROUNDS");
    return rounds > 0 ? rounds : 8;
}

// The jobs' files have a content of their own each, which their names tell.
static QByteArray GetContent(const QByteArray& name)
{
    QByteArray content;
    while (content.size() < cJobSize)
        content += name + '\n';
    return content;
}

// The names in the inbox by how often they are there, under whatever name a second one would have got.
static QMap<QByteArray, int> CountWholeJobs(const QString& inbox)
{
    QMap<QByteArray, int> counts;
    for (const QString& file : QDir(inbox).entryList(QDir::Files)) {
        const QByteArray content = ReadFile(inbox + QLatin1Char('/') + file);
        const QByteArray name = content.left(content.indexOf('\n'));
        EXPECT_EQ(content, GetContent(name)) << file.toStdString();
        ++counts[name];
    }
    return counts;
}

// Submits jobs of its own until its parent says something; says the names of those that were taken.
CHILD_ROLE(SubmitUntilTold)
{
    std::atomic<bool> isTold{false};
    std::thread listener([&] {
        HearFromParent();
        isTold = true;
    });
    const QString folder = arguments.at(0);
    QByteArray taken;
    for (int number = 0; !isTold; ++number) {
        const QByteArray name = (arguments.mid(1).join(QLatin1Char('-')) + "-%1"_q.arg(number)).toLatin1();
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(name);
        WriteFile(path, GetContent(name));
        if (HopboxHandOff::SubmitJob("Press"_q, path))
            taken += ' ' + name;
        else
            QFile::remove(path);
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
    }
    listener.join();
    SayToParent("taken" + taken);
    return 0;
}

TEST(Kill, EveryJobThatWasTakenIsInTheInboxOnceAndWhole)
{
    const Sandbox sandbox;
    const QString jobs = sandbox.GetPath("jobs"_q);
    const QString inbox = sandbox.GetPath("in"_q);
    std::mt19937 random(7);
    int total = 0;
    for (int round = 0; round < GetRounds(); ++round) {
        QDir().mkpath(jobs);
        const auto senders = StartChildren("SubmitUntilTold"_q, cSenders, {jobs, QString::number(round)});
        for (int kill = 0; kill < 3; ++kill) {
            PrinterProcessor receiver(sandbox, {"--inbox"_q, inbox});
            std::this_thread::sleep_for(std::chrono::milliseconds(random() % 400));
            receiver.Kill();
        }
        PrinterProcessor last(sandbox, {"--inbox"_q, inbox});
        for (const auto& sender : senders)
            sender->Say("enough");
        QMap<QByteArray, int> expected;
        for (const auto& sender : senders) {
            const QList<QByteArray> line = sender->ReadLine().split(' ');
            ASSERT_EQ(line.front(), "taken");
            for (const QByteArray& name : line.mid(1))
                expected[name] = 1;
        }
        total += expected.size();
        // A start that takes nothing ends when what was left is done.
        last.Kill();
        PrinterProcessor rest(sandbox, {"--inbox"_q, inbox});
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, sandbox.GetPath("none"_q)));
        while (rest.ReadLine().value("JobPath"_q).toString() != sandbox.GetPath("none"_q)) {
        }
        EXPECT_EQ(CountWholeJobs(inbox), expected) << "in round " << round;
        QDir(jobs).removeRecursively();
        for (const QString& file : QDir(inbox).entryList(QDir::Files))
            QFile::remove(inbox + QLatin1Char('/') + file);
        if (testing::Test::HasFailure())
            break;
    }
    EXPECT_GT(total, 0);
    std::printf("%d jobs were taken.\n", total);
}
