#include "apps/printer_processor/inbox/JobInbox.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/system/GFileSystemBase.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Test.h"

static const std::atomic<bool> cGoOn{false};
static const std::atomic<bool> cStop{true};

static InboxJob MakeJob(uint64_t position, const GBuffer& payload = "{}")
{
    return {0, 77, position, 1, payload, GString()};
}

class InboxTest : public testing::Test
{
protected:
    QString GetPath(const char* name) const { return mSandbox.GetPath(QString::fromUtf8(name)); }
    GPathName GetInbox() const { return GPathName(GetPath("in")); }
    GPathName GetJournal() const { return GPathName(GetPath("in/.printer-processor/journal")); }
    QStringList ListCopies() const { return List(GetPath("in/.printer-processor/copies")); }
    QStringList ListInbox() const { return List(GetPath("in")); }

    static QStringList List(const QString& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    const Sandbox mSandbox;
};

TEST_F(InboxTest, JournalIsReadAsFarAsItMakesSense)
{
    using namespace JobJournalLine;
    InboxJob first = MakeJob(0);
    first.number = 1;
    InboxJob second = MakeJob(50);
    second.number = 2;
    const GBuffer begin = Keeper(5) + Job(first) + Job(second);
    const std::tuple<const char*, GBuffer, size_t, bool> cases[] = {
        {"nothing", "", 0, false},
        {"two jobs", begin, 2, false},
        {"torn end", begin + Done(1).chopped(1), 2, false},
        {"done", begin + Done(1), 1, false},
        {"ready", begin + Ready(1, "a.pdf"_q), 2, false},
        {"end", begin + End(78, 1) + End(77, 60), 2, false},
        {"no keeper", Job(first), 1, true},
        {"wrong check", begin + "0" + Done(1).mid(1) + Done(2), 1, true},
        {"no such job", begin + Done(3), 2, true},
        {"ready without a job", begin + Ready(3, "a"_q), 2, true},
        {"done twice", begin + Done(1) + Done(1), 1, true},
        {"job once more", begin + Job(second), 2, true},
        {"job of an earlier place", begin + End(77, 60) + Job({3, 77, 51, 1, "{}", {}}), 2, true},
        {"name that leads out", begin + Ready(1, "../a"_q), 2, true},
        {"name of the folder", begin + Ready(1, ".."_q), 2, true},
        {"something else", begin + "\n" + QByteArray(100000, '{') + "\n", 2, true},
    };
    for (const auto& [name, text, jobs, isDamaged] : cases) {
        SCOPED_TRACE(name);
        const JobJournalContent content = JobJournalContent::Read(text);
        EXPECT_EQ(content.jobs.size(), jobs);
        EXPECT_EQ(content.isDamaged, isDamaged);
        EXPECT_EQ(content.Knows(77, 50), text.contains(Job(second)));
        EXPECT_EQ(content.Knows(77, 51), text.contains(End(77, 60)));
    }
}

TEST_F(InboxTest, JournalTakesEachMessageOnceAndForgetsNothing)
{
    uint64_t keeper = 0;
    {
        JobJournal journal(GPathName(GetPath("journal")));
        keeper = journal.GetKeeper();
        EXPECT_NE(keeper, 0U);
        EXPECT_EQ(journal.Add({MakeJob(0, "a"), MakeJob(9, "b")}).size(), 2U);
        EXPECT_EQ(journal.Add({MakeJob(9, "b"), MakeJob(20, "c")}).size(), 1U);
        journal.NoteDone(1);
        journal.NoteReady(2, "b.pdf"_q, "a pipe|a/link"_list);
    }
    WriteFile(GetPath("journal"), ReadFile(GetPath("journal")) + "torn");
    JobJournal again(GPathName(GetPath("journal")));
    EXPECT_EQ(again.GetKeeper(), keeper);
    ASSERT_EQ(again.GetJobs().size(), 2U);
    EXPECT_EQ(again.GetJobs().front().name, "b.pdf"_q);
    EXPECT_EQ(again.GetJobs().front().leftOut, "a pipe|a/link"_list);
    EXPECT_EQ(JobJournalContent::Read(ReadFile(GetPath("journal"))).jobs[2].leftOut, "a pipe|a/link"_list);
    EXPECT_EQ(again.GetJobs().back().payload, "c");
    EXPECT_TRUE(again.Add({MakeJob(0), MakeJob(20)}).empty());
    // What is over does not stay for ever.
    for (uint64_t job = 0; job < 60; ++job) {
        again.Add({MakeJob(100 + job, GBuffer(100000, 'x'))});
        again.NoteDone(again.GetJobs().back().number);
    }
    EXPECT_LT(ReadFile(GetPath("journal")).size(), 2000000);
    EXPECT_EQ(again.GetJobs().size(), 2U);
    EXPECT_FALSE(JobJournalContent::Read(ReadFile(GetPath("journal"))).isDamaged);
    EXPECT_FALSE(QFile::exists(GetPath("journal.damaged")));
}

TEST_F(InboxTest, DamagedJournalIsKeptAndTheRestCounts)
{
    {
        JobJournal(GPathName(GetPath("journal"))).Add({MakeJob(0, "a")});
    }
    const QByteArray damaged = ReadFile(GetPath("journal")) + "x\n";
    WriteFile(GetPath("journal"), damaged);
    EXPECT_EQ(JobJournal(GPathName(GetPath("journal"))).GetJobs().size(), 1U);
    EXPECT_EQ(ReadFile(GetPath("journal.damaged")), damaged);
}

// What a kill leaves at each step of a job.
TEST_F(InboxTest, StartGoesOnWhereTheProcessWasKilled)
{
    using namespace JobJournalLine;
    const QString source = GetPath("a.pdf");
    WriteFile(source, "new");
    InboxJob job = MakeJob(0);
    job.number = 1;
    const struct
    {
        const char* name;
        bool isReady, hasCopy;
        const char* saved;  // what the inbox holds of the job in the end; null for nothing
        bool isTaken;       // and the name was taken by another file
    } cases[] = {
        {"before the copy", false, false, "new", false},
        {"in the copy", false, true, "new", false},
        {"before it got its name", true, true, "part", false},
        {"after it got its name", true, false, nullptr, false},
        {"name taken meanwhile", true, true, "part", true},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        GFileSystemBase::DropFolder(GetInbox());
        QDir().mkpath(GetPath("in/.printer-processor/copies"));
        WriteFile(GetJournal().GetNativePath(),
                  Keeper(5) + Job(job) + (test.isReady ? Ready(1, "a.pdf"_q) : ""));
        if (test.hasCopy)
            WriteFile(GetPath("in/.printer-processor/copies/1"), "part");
        WriteFile(GetPath("in/.printer-processor/copies/9"), "left by another");
        if (test.isTaken)
            WriteFile(GetPath("in/a.pdf"), "a user's");
        JobInbox inbox(GetInbox());
        EXPECT_FALSE(ListCopies().contains("9"_q));
        std::vector<InboxJob> jobs = inbox.GetJournal().GetJobs();
        ASSERT_EQ(jobs.size(), 1U);
        const GPathName copy = inbox.Deliver(&jobs.front(), QDir::toNativeSeparators(source), cGoOn);
        EXPECT_EQ(copy.GetLeaf() == "a.pdf"_q, !test.isTaken);
        EXPECT_EQ(ReadFile(copy.GetNativePath()), test.saved != nullptr ? test.saved : "none");
        EXPECT_EQ(ListInbox().size(), (test.saved == nullptr ? 0 : 1) + (test.isTaken ? 1 : 0));
        EXPECT_EQ(ListCopies(), QStringList());
        // Until it is over it comes again, and nothing is copied again.
        std::vector<InboxJob> again = inbox.GetJournal().GetJobs();
        ASSERT_EQ(again.size(), 1U);
        EXPECT_EQ(inbox.Deliver(&again.front(), QDir::toNativeSeparators(source), cGoOn), copy);
        EXPECT_EQ(again.front().GetID(), jobs.front().GetID());
    }
}

TEST_F(InboxTest, StoppedJobLeavesNothingAndComesAgain)
{
    WriteFile(GetPath("job/a.pdf"), "1");
    JobInbox inbox(GetInbox());
    std::vector<InboxJob> jobs = inbox.GetJournal().Add({MakeJob(0)});
    for (const char* name : {"job", "job/a.pdf"}) {
        EXPECT_EQ(GetErrorCode(
                      [&] { inbox.Deliver(&jobs.front(), QDir::toNativeSeparators(GetPath(name)), cStop); }),
                  GErrorCode::cFile);
        EXPECT_EQ(ListInbox() + ListCopies(), QStringList());
        EXPECT_EQ(inbox.GetJournal().GetJobs().size(), 1U);
    }
    // What an attempt could not take away does not hold up the next one.
    WriteFile(GetPath("in/.printer-processor/copies/1"), "a part");
    const GPathName copy =
        inbox.Deliver(&jobs.front(), QDir::toNativeSeparators(GetPath("job/a.pdf")), cGoOn);
    EXPECT_EQ(ReadFile(copy.GetNativePath()), "1");
}

TEST_F(InboxTest, SecondProcessIsKeptOut)
{
    const JobInbox inbox(GetInbox());
    EXPECT_EQ(GetErrorCode([&] { const JobInbox second(GetInbox()); }), GErrorCode::cFile);
}
