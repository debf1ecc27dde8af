#pragma once

#include "apps/printer_processor/inbox/JobInbox.h"

#include <QJsonObject>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

// The command that is run for jobs, and what becomes of one that fails.
struct JobCommand
{
    QString program;  // empty: none is run
    QStringList arguments;
    std::chrono::milliseconds retry{0};  // before each further attempt; 0: a second, then ever longer
    int attempts = 0;                    // after which the next job has its turn; 0: no limit
};

// Runs a command for each job that lies in the inbox, on a thread of its own, one after the other in the
// order in which they came. The job's path is its last argument, and the job's line in JSON, with its "id",
// its standard input, a file that is whole before the command begins; what it prints goes to standard error.
//
// A job is over when the command ends with status 0: only then it goes out of the journal. Else it is run
// again, with the same id, and no other job's before. When it has failed as often as it may, its turn is
// over, and the next start of the receiver begins with it again.
class JobHook
{
public:
    // `print` is called on the thread with a line for each command that succeeded ("ran" is true), has failed
    // for a new reason ("waiting"), or was given up ("error" alone). The inbox must outlive this.
    JobHook(JobCommand command, JobInbox* inbox, std::function<void(const QJsonObject&)> print);

    // Stops, and waits for the end of the thread.
    ~JobHook();
    JobHook(const JobHook&) = delete;
    JobHook& operator=(const JobHook&) = delete;

    // `line` is what was printed of the job, with "saved" and "id".
    void Add(const InboxJob& job, const QJsonObject& line);

    // Whether a command runs or is to be run that has not failed yet, and whether one waits for another
    // attempt or was given up.
    bool IsBusy() const;
    bool IsWaiting() const;

    // Starts no more commands and asks one that runs to end. False when it has not ended in time; the end of
    // the process ends it.
    [[nodiscard]] bool Stop(std::chrono::milliseconds timeout);

private:
    using Clock = std::chrono::steady_clock;

    struct Item
    {
        uint64_t number = 0;  // in the journal
        QJsonObject line;
        QString told;  // what its last line gave as the reason
        int failures = 0;
        Clock::time_point due;
    };

    void Run();
    [[nodiscard]] bool WaitForFirst(Item* item);
    QString RunCommand(const QJsonObject& line) const;
    void Succeed(const Item& item);
    void Fail(Item item, const QString& reason);
    void DropFirst();

    const JobCommand mCommand;
    JobInbox* const mInbox;
    const std::function<void(const QJsonObject&)> mPrint;
    std::atomic<bool> mIsStopped{false};
    std::atomic<bool> mHasGivenUp{false};
    mutable std::mutex mMutex;  // over the next
    std::condition_variable mChanged;
    std::deque<Item> mItems;  // the first is the one that is run
    bool mHasEnded = false;
    std::thread mThread;
};
