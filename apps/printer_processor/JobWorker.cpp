#include "apps/printer_processor/JobWorker.h"

#include "apps/printer_processor/MessageLine.h"

#include <QJsonArray>

#include <algorithm>

static constexpr std::chrono::seconds cLongestPause(60);

JobWorker::JobWorker(JobInbox* inbox, const JobCommand& command)
    : mInbox(inbox),
      mHook(
          command.program.isEmpty()
              ? nullptr
              : std::make_unique<JobHook>(command, inbox, [this](const QJsonObject& line) { Print(line); })),
      mThread([this] { Run(); })
{
}

JobWorker::~JobWorker()
{
    static_cast<void>(Stop(std::chrono::milliseconds(0)));  // waited for below
    mThread.join();
}

void JobWorker::AddLine(const QJsonObject& line)
{
    Item item;
    item.line = line;
    Add(item);
}

void JobWorker::AddJob(const InboxJob& job)
{
    Item item;
    item.job = job;
    Add(item);
}

void JobWorker::Add(Item item)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    mItems.push_back(std::move(item));
    mChanged.notify_all();
}

JobWorker::State JobWorker::GetState() const
{
    const std::lock_guard<std::mutex> guard(mMutex);
    const bool isTrying =
        std::any_of(mItems.cbegin(), mItems.cend(), [](const Item& item) { return item.told.isEmpty(); });
    if (mIsDoing || isTrying || (mHook && mHook->IsBusy()))
        return State::Busy;
    return mItems.empty() && !(mHook && mHook->IsWaiting()) ? State::Done : State::Waiting;
}

bool JobWorker::Stop(std::chrono::milliseconds timeout)
{
    const Clock::time_point deadline = Clock::now() + timeout;
    mIsStopped = true;
    const bool hasHookEnded = !mHook || mHook->Stop(timeout);
    std::unique_lock<std::mutex> lock(mMutex);
    mChanged.notify_all();
    return mChanged.wait_until(lock, deadline, [this] { return mHasEnded; }) && hasHookEnded;
}

void JobWorker::Run()
{
    while (std::optional<Item> item = WaitForItem())
        Do(std::move(*item));
    const std::lock_guard<std::mutex> guard(mMutex);
    mHasEnded = true;
    mChanged.notify_all();
}

// The first item whose time has come; none when it is to stop and every line that is no job's is printed.
std::optional<JobWorker::Item> JobWorker::WaitForItem()
{
    std::unique_lock<std::mutex> lock(mMutex);
    mIsDoing = false;
    while (true) {
        const auto next = GetNext();
        if (next == mItems.end() && mIsStopped)
            return {};
        if (next == mItems.end()) {
            mChanged.wait(lock);
        } else if (next->due > Clock::now()) {
            mChanged.wait_until(lock, Clock::time_point(next->due));
        } else {
            std::optional<Item> item = std::move(*next);
            mItems.erase(next);
            mIsDoing = true;
            return item;
        }
    }
}

std::deque<JobWorker::Item>::iterator JobWorker::GetNext()
{
    if (mIsStopped)
        return std::find_if(mItems.begin(), mItems.end(), [](const Item& item) { return !item.job; });
    return std::min_element(mItems.begin(), mItems.end(),
                            [](const Item& one, const Item& other) { return one.due < other.due; });
}

void JobWorker::Do(Item item)
{
    if (item.job)
        DoJob(std::move(item));
    else
        Print(item.line);
}

void JobWorker::DoJob(Item item)
{
    HopboxJobTicket ticket;
    QJsonObject& line = item.line;
    const bool isValid = MessageLine::DescribeJob(item.job->sender, item.job->payload, &line, &ticket);
    try {
        if (isValid) {
            Deliver(&item, ticket);
            return;
        }
        mInbox->GetJournal().NoteDone(item.job->number);
    } catch (const RefusedJob& error) {
        MessageLine::SetError(&line, error.GetDescription());
        mInbox->GetJournal().NoteDone(item.job->number);
    } catch (const std::exception& error) {
        TryAgain(std::move(item), GString::fromUtf8(error.what()));
        return;
    }
    Print(line);
}

void JobWorker::Deliver(Item* item, const HopboxJobTicket& ticket)
{
    const GPathName copy = mInbox->Deliver(&*item->job, ticket.jobPath, mIsStopped);
    item->line.insert(QStringLiteral("saved"), copy.GetNativePath());
    if (!item->job->leftOut.isEmpty())
        item->line.insert(QStringLiteral("left_out"), QJsonArray::fromStringList(item->job->leftOut));
    if (mHook)
        item->line.insert(QStringLiteral("id"), item->job->GetID());
    else
        mInbox->GetJournal().NoteDone(item->job->number);
    Print(item->line);
    if (mHook)
        mHook->Add(*item->job, item->line);
}

void JobWorker::TryAgain(Item item, const GString& reason)
{
    if (mIsStopped)
        return;
    if (item.told != reason) {
        MessageLine::SetError(&item.line, reason);
        item.line.insert(QStringLiteral("waiting"), true);
        Print(item.line);
        item.told = reason;
    }
    item.due = Clock::now() + item.pause;
    item.pause = std::min(2 * item.pause, cLongestPause);
    Add(std::move(item));
}

void JobWorker::Print(const QJsonObject& line)
{
    if (!MessageLine::Print(line))
        mIsOutputLost = true;
}
