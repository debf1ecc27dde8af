#include "apps/printer_processor/inbox/JobJournalText.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <chrono>
#include <map>
#include <random>
#include <set>
#include <thread>

// On Windows the queue goes with the killed process, so that what was in it can't be promised.
static constexpr int cJobs = 200;

// What was written down of the calls for the job of each name: the id of each.
static std::map<QString, QList<QByteArray>> ReadCalls(const QString& folder)
{
    std::map<QString, QList<QByteArray>> calls;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
        const QByteArray lines = ReadFile(file.filePath());
        calls[file.fileName()] = lines.left(lines.lastIndexOf('\n')).split('\n');
    }
    return calls;
}

// Writes its job's id down, and fails now and then.
CHILD_ROLE(RunNowAndThen)
{
    const QJsonObject job = QJsonDocument::fromJson(HearFromParent()).object();
    QFile calls(arguments.at(0) + QLatin1Char('/') + QFileInfo(arguments.at(1)).fileName());
    if (!calls.open(QIODevice::Append))
        return 2;
    calls.write(job.value("id"_q).toString().toUtf8() + '\n');
    calls.close();
    std::mt19937 random(std::random_device{}());
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % 10));
    return random() % 4 == 0 ? 1 : 0;
}

TEST(HookKill, EachJobsCommandRunsUntilItSucceedsWithOneIDAndNeverAgain)
{
    const Sandbox sandbox;
    const QString calls = sandbox.GetPath("calls"_q);
    ASSERT_TRUE(QDir().mkpath(calls));
    const QStringList call = {"--inbox"_q,        sandbox.GetPath("in"_q),
                              "--run"_q,          QCoreApplication::applicationFilePath(),
                              "--run-argument"_q, "--child"_q,
                              "--run-argument"_q, "RunNowAndThen"_q,
                              "--run-argument"_q, calls,
                              "--retry"_q,        "0.005"_q};
    std::mt19937 random(11);
    std::map<QString, int> callsAtSuccess;  // for the jobs of which a receiver said that they are over
    const auto readLines = [&](PrinterProcessor& receiver, size_t enough) {
        for (QJsonObject line; callsAtSuccess.size() < enough && !(line = receiver.ReadLine()).isEmpty();) {
            if (line.contains("ran"_q))
                callsAtSuccess[QFileInfo(line.value("saved"_q).toString()).fileName()] = 0;
        }
        for (auto& [name, count] : callsAtSuccess) {
            const int now = ReadCalls(calls).at(name).size();
            EXPECT_TRUE(count == 0 || count == now) << name.toStdString();
            count = now;
        }
    };
    int kills = 0;
    for (int job = 0; job < cJobs; ++kills) {
        PrinterProcessor receiver(sandbox, call);
        for (const int end = qMin<int>(cJobs, job + 5 + static_cast<int>(random() % 15)); job < end; ++job) {
            const QString path = sandbox.GetPath("jobs/%1"_q.arg(job));
            WriteFile(path, QByteArray::number(job));
            EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, path));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 400));
        receiver.Kill();
        readLines(receiver, cJobs);
    }
    // What a killed receiver could not say is over without a word: a job more shows the end.
    PrinterProcessor last(sandbox, call);
    const QString path = sandbox.GetPath("jobs/last"_q);
    WriteFile(path, "last");
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, path));
    while (callsAtSuccess.count("last"_q) == 0)
        readLines(last, callsAtSuccess.size() + 1);
    std::set<QByteArray> ids;
    const std::map<QString, QList<QByteArray>> all = ReadCalls(calls);
    EXPECT_EQ(all.size(), cJobs + 1U);
    int count = 0;
    for (const auto& job : all) {
        EXPECT_EQ(job.second.count(job.second.front()), job.second.size()) << job.first.toStdString();
        EXPECT_TRUE(ids.insert(job.second.front()).second) << job.first.toStdString();
        count += job.second.size();
    }
    const QByteArray journal = ReadFile(sandbox.GetPath("in/.printer-processor/journal"_q));
    EXPECT_TRUE(JobJournalContent::Read(journal).jobs.empty()) << "nothing is to be done any more";
    std::printf("%d kills, %d calls, %d of them told as over\n", kills, count,
                static_cast<int>(callsAtSuccess.size()));
}
