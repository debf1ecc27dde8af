#include "apps/printer_processor/JobWorker.h"
#include "apps/printer_processor/MessageLine.h"
#include "apps/printer_processor/Options.h"
#include "apps/printer_processor/StopRequest.h"
#include "foundation/core/GMessageLoop.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxMessages.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <exception>

// The receiving process of a Hopbox as people can run it: takes the messages of the Printer Processor channel
// and shows them. It has the image name by which senders find such processes.

namespace
{
constexpr int cExitDone = 0;
constexpr int cExitFailed = 1;

constexpr int cTickInterval = 500;  // milliseconds; a message brings a tick of its own
constexpr int cLookInterval = 50;

// What is being copied has this long to end; with the rest of the way out it makes less than a second.
constexpr std::chrono::milliseconds cStopTime(600);

void PrintError(const QString& text)
{
    std::fprintf(stderr, "PrinterProcessorWin.exe: %s\n", text.toUtf8().constData());
    std::fflush(stderr);
}

// What the inbox and the channel have to tell, from any thread, goes where people look for it.
class ErrorLog : public Morvane::ILogInterface
{
public:
    void log(Morvane::LogLevel level, const QString&, const QString& message) noexcept override
    {
        if (level != Morvane::LogLevel::Debug)
            PrintError(message);
    }
};

std::unique_ptr<JobInbox> OpenInbox(const Options& options)
{
    return options.inbox.IsEmpty()
               ? nullptr
               : std::make_unique<JobInbox>(options.inbox, options.mode, StopRequest::IsMade);
}

// Accepts messages: whatever is to be done with them is noted and left to the worker.
class Acceptance
{
public:
    Acceptance(JobInbox* inbox, JobWorker* worker, const GPPIPCAddresses& hopboxes)
        : mInbox(inbox), mWorker(worker), mHopboxes(hopboxes)
    {
        if (mInbox == nullptr)
            return;
        for (const InboxJob& job : mInbox->GetJournal().GetJobs())
            mWorker->AddJob(job);
    }

    GPPIPCKeeper GetKeeper()
    {
        return {mInbox != nullptr ? mInbox->GetJournal().GetKeeper() : 0,
                [this](const std::vector<GPPIPCMessage>& messages) { Keep(messages); }};
    }

private:
    // In this order: nothing is told of a job that is not in the journal.
    void Keep(const std::vector<GPPIPCMessage>& messages)
    {
        std::vector<InboxJob> jobs;
        for (const GPPIPCMessage& message : messages) {
            if (IsForInbox(message))
                jobs.push_back({0, message.queue, message.position, message.process, message.payload, {}});
        }
        if (mInbox != nullptr)
            jobs = mInbox->GetJournal().Add(jobs);
        for (const InboxJob& job : jobs)
            mWorker->AddJob(job);
        for (const GPPIPCMessage& message : messages) {
            if (!IsForInbox(message))
                mWorker->AddLine(Describe(message));
        }
    }

    bool IsForInbox(const GPPIPCMessage& message) const
    {
        return mInbox != nullptr && message.kind == HopboxMessage::cSubmitJob && IsTaken(message);
    }

    // What was posted to a receiver before this one was posted rightly then.
    bool IsTaken(const GPPIPCMessage& message) const
    {
        HopboxJobTicket ticket;
        return message.isLeft || message.kind != HopboxMessage::cSubmitJob ||
               !ticket.FromText(GString::fromUtf8(message.payload)) || mHopboxes.Accepts(ticket.printerName);
    }

    QJsonObject Describe(const GPPIPCMessage& message) const
    {
        QJsonObject line = MessageLine::Describe(message);
        if (!IsTaken(message))
            MessageLine::SetError(
                &line, QStringLiteral("The receiver takes jobs of %1 only.").arg(mHopboxes.GetText()));
        return line;
    }

    JobInbox* const mInbox;
    JobWorker* const mWorker;
    const GPPIPCAddresses& mHopboxes;
};

// Ends the event loop when somebody wants this process to end, when the time is up, or when everything that
// it was to take is done.
class Ending
{
public:
    Ending(const Options& options, const JobWorker& worker) : mWorker(worker), mCount(options.count)
    {
        QObject::connect(&mPoll, &QTimer::timeout, [this] { Look(); });
        mPoll.start(cLookInterval);
        if (options.milliseconds > 0) {
            const int status = options.count > 0 ? cExitFailed : cExitDone;
            QTimer::singleShot(options.milliseconds, [status] { QCoreApplication::exit(status); });
        }
    }

    void Count() { ++mTaken; }

private:
    void Look() const
    {
        const JobWorker::State state = mWorker.GetState();
        if (StopRequest::IsMade())
            QCoreApplication::exit(cExitDone);
        else if (mWorker.IsOutputLost())
            QCoreApplication::exit(cExitFailed);
        else if (mCount > 0 && mTaken >= mCount && state != JobWorker::State::Busy)
            QCoreApplication::exit(state == JobWorker::State::Done ? cExitDone : cExitFailed);
    }

    const JobWorker& mWorker;
    const int mCount;
    int mTaken = 0;
    QTimer mPoll;
};

// The message loop, for as long as this lives.
class LoopRun
{
public:
    LoopRun() { GMessageLoop::Start(cTickInterval); }
    ~LoopRun() { GMessageLoop::Stop(); }
    LoopRun(const LoopRun&) = delete;
    LoopRun& operator=(const LoopRun&) = delete;
};

// Takes messages up until it is to end. The receiver deregisters however that comes.
int TakeMessages(const Options& options, JobInbox* inbox, JobWorker* worker)
{
    Acceptance acceptance(inbox, worker, options.hopboxes);
    Ending ending(options, *worker);
    const LoopRun loop;
    const size_t limit = options.count > 0 ? static_cast<size_t>(options.count) : GPPIPCReceiver::cNoLimit;
    const GPPIPCReceiver receiver([&](const GPPIPCMessage&) { ending.Count(); },
                                  GPPIPCChannelKind::PrinterProcessor, acceptance.GetKeeper(), limit,
                                  options.hopboxes);
    PrintError(QStringLiteral("ready as process %1").arg(GProcessInfo::GetOwnProcessID()));
    return QCoreApplication::exec();
}

int Receive(const Options& options)
{
    const StopRequest stopRequest;
    const std::unique_ptr<JobInbox> inbox = OpenInbox(options);
    JobWorker worker(inbox.get(), options.command);
    int status = cExitFailed;
    try {
        status = TakeMessages(options, inbox.get(), &worker);
    } catch (const std::exception& error) {
        PrintError(QString::fromUtf8(error.what()));
    }
    // Who waits for a server or a reader that does not answer can't be waited for. What he has begun is in
    // the journal.
    if (!worker.Stop(cStopTime))
        std::_Exit(status);
    return status;
}
}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    GTrace::SetLogger(std::make_shared<ErrorLog>());
    try {
        Options options;
        if (const std::optional<int> status = Options::Read(argc, argv, options))
            return *status;
        return Receive(options);
    } catch (const std::exception& error) {
        // Somebody who wants it to end does not mind that the inbox is another's.
        if (StopRequest::IsMade())
            return cExitDone;
        PrintError(QString::fromUtf8(error.what()));
        return cExitFailed;
    }
}
