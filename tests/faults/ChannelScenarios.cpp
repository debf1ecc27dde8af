#include "Scenarios.h"
#include "apps/printer_processor/inbox/JobInbox.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace
{
// The objects of the channel come and go with its receivers; lock files mean nothing; a whole copy that did
// not get its name waits for the next run.
const QStringList cPassingFiles = {"Channel_*"_q,
                                   "Channel_*/*"_q,
                                   "in/.printer-processor/lock"_q,
                                   "in/.printer-processor/copies/1*"_q,
                                   "in/.printer-processor/copies/1/*"_q,
                                   "in/.printer-processor/copies/1/*/"_q,
                                   "in/.printer-processor/copies/1/*/*"_q};

GPathName GetInbox(const QString& root)
{
    return GPathName(root + "/in"_q);
}

int Fail(const char* reason)
{
    std::fprintf(stderr, "%s\n", reason);
    return 1;
}

void MakeEmptyInbox(const QString& root)
{
    const JobInbox inbox(GetInbox(root));
}

QString CountJobs(const QString& root)
{
    return QString::number(JobInbox(GetInbox(root)).GetJournal().GetJobs().size());
}

void AcceptJob(const QString& root)
{
    WriteFile(root + "/job/a.pdf"_q, QByteArray(1000, 'a'));
    WriteFile(root + "/job/sub/b.pdf"_q, "b");
    JobInbox(GetInbox(root)).GetJournal().Add({{0, 77, 0, 1, "{}", GString()}});
}

QString LookIntoInbox(const QString& root)
{
    const QMap<QString, QByteArray> job = ReadTree(root + "/in/job"_q);
    return QStringList(job.keys()).join(QLatin1Char(' ')) +
           QString::fromUtf8(job["a.pdf"_q] + ReadFile(root + "/in/a.pdf"_q));
}
}  // namespace

CHILD_ROLE(ListProcesses)
{
    try {
        return GProcessInfo::GetProcessIDs(QFileInfo(QCoreApplication::applicationFilePath()).fileName())
                       .empty()
                   ? 2
                   : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

// Registers, and accepts a ticket: one that a queue holds from before, or one of its own.
static int Accept(const QString& root, bool isPosting)
{
    try {
        JobInbox inbox(GetInbox(root));
        JobJournal& journal = inbox.GetJournal();
        const auto keep = [&journal](const std::vector<GPPIPCMessage>& messages) {
            for (const GPPIPCMessage& message : messages)
                journal.Add({{0, message.queue, message.position, message.process, message.payload, {}}});
        };
        GPPIPCReceiver receiver([](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
                                {journal.GetKeeper(), keep});
        if (isPosting && journal.GetJobs().empty())
            GPPIPCManager::Get()->Post(GProcessInfo::GetOwnProcessID(), 145, "{}");
        receiver.TakeUp();
        return journal.GetJobs().size() == 1 ? 0 : Fail("The ticket waits in the queue.");
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}

CHILD_ROLE(PostAndAccept)
{
    return Accept(arguments.at(0), true);
}

CHILD_ROLE(TakeOverTicket)
{
    return Accept(arguments.at(0), false);
}

FaultScenario GetPostAndAccept()
{
    return {"PostAndAccept", MakeEmptyInbox, QString(), {"PostAndAccept"_q, "%1"_q},
            CountJobs,       cPassingFiles,  true,      false};
}

// Ends without a word to anybody, with a ticket in its queue.
CHILD_ROLE(LeaveTicket)
{
    JobInbox inbox(GetInbox(arguments.at(0)));
    const auto receiver = std::make_unique<GPPIPCReceiver>(
        [](const GPPIPCMessage&) {}, GPPIPCChannelKind::PrinterProcessor,
        GPPIPCKeeper{inbox.GetJournal().GetKeeper(), [](const std::vector<GPPIPCMessage>&) {}});
    GPPIPCManager::Get()->Post(GProcessInfo::GetOwnProcessID(), 145, "{}");
    std::_Exit(receiver == nullptr ? 1 : 0);
}

// The ticket of a dead receiver is taken, or waits where the next start finds it.
FaultScenario GetTakeOver()
{
    FaultScenario scenario = GetPostAndAccept();
    scenario.name = "TakeOver";
    scenario.prepare = [](const QString& root) {
        MakeEmptyInbox(root);
        EXPECT_EQ(ChildProcess("LeaveTicket"_q, {root}).WaitForExit(), 0);
    };
    scenario.arguments = QStringList{"TakeOverTicket"_q, "%1"_q};
    return scenario;
}

// What a start does with the jobs that are in the journal.
CHILD_ROLE(CopyAcceptedJobs)
{
    try {
        const std::atomic<bool> isStopped{false};
        JobInbox inbox(GetInbox(arguments.at(0)));
        for (InboxJob& job : inbox.GetJournal().GetJobs()) {
            try {
                inbox.Deliver(&job, arguments.at(0) + arguments.at(1), isStopped);
            } catch (const RefusedJob&) {
                // It is written off like one that is done.
            }
            inbox.GetJournal().NoteDone(job.number);
        }
        return 0;
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}

FaultScenario GetCopyOfAcceptedJob()
{
    return {"CopyOfAcceptedJob", AcceptJob,     QString(), {"CopyAcceptedJobs"_q, "%1"_q, "/job"_q},
            LookIntoInbox,       cPassingFiles, true,      true};
}

FaultScenario GetCopyOfAcceptedFile()
{
    return {"CopyOfAcceptedFile", AcceptJob,     QString(), {"CopyAcceptedJobs"_q, "%1"_q, "/job/a.pdf"_q},
            LookIntoInbox,        cPassingFiles, true,      true};
}
