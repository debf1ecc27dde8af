#pragma once

#include "apps/printer_processor/JobHook.h"

#include <QJsonObject>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

struct HopboxJobTicket;

// Does on a thread of its own what may take long: it copies jobs to the inbox, and prints a line for each
// message. Whoever accepts messages never waits for it.
//
// A line of a job has "saved" with the path of the copy, and "id" where a command is run for it, or "error".
// What may be gone the next time, such as a full disk, keeps the job: it is tried again after a second, and
// then after twice the time, up to a minute; its line then has "waiting", and comes again only when the
// reason is another one.
class JobWorker
{
public:
    // `inbox` is null where nothing is copied; it must outlive this. The command is run for each job that was
    // copied.
    explicit JobWorker(JobInbox* inbox, const JobCommand& command = {});

    // Stops, and waits for the end of the thread.
    ~JobWorker();
    JobWorker(const JobWorker&) = delete;
    JobWorker& operator=(const JobWorker&) = delete;

    void AddLine(const QJsonObject& line);
    void AddJob(const InboxJob& job);

    enum class State
    {
        Busy,
        Waiting,  // for another attempt at what failed
        Done
    };
    State GetState() const;

    // Whether a line could not be written.
    bool IsOutputLost() const { return mIsOutputLost; }

    // Ends the copying and the command, whose jobs stay in the journal. False when a thread has not come back
    // in time: it waits for the system, and only the end of the process ends it.
    [[nodiscard]] bool Stop(std::chrono::milliseconds timeout);

private:
    using Clock = std::chrono::steady_clock;

    struct Item
    {
        QJsonObject line;
        std::optional<InboxJob> job;
        Clock::time_point due;
        std::chrono::seconds pause{1};  // before the next attempt
        GString told;                   // what its last line gave as the reason
    };

    void Add(Item item);
    void Run();
    std::optional<Item> WaitForItem();
    std::deque<Item>::iterator GetNext();
    void Do(Item item);
    void DoJob(Item item);
    void Deliver(Item* item, const HopboxJobTicket& ticket);
    void TryAgain(Item item, const GString& reason);
    void Print(const QJsonObject& line);

    JobInbox* const mInbox;
    std::atomic<bool> mIsStopped{false};
    std::atomic<bool> mIsOutputLost{false};
    mutable std::mutex mMutex;  // over the next
    std::condition_variable mChanged;
    std::deque<Item> mItems;
    bool mIsDoing = false;
    bool mHasEnded = false;
    std::unique_ptr<JobHook> mHook;
    std::thread mThread;
};
