#include "archive/UnzipThread.h"

#include "ZipSamples.h"

using namespace Morvane;

// Read by the thread sanitizer. QThread waits for its end with a condition of Qt's, which the sanitizer does
// not see, and the condition's own end then looks like a race. Nothing else is passed over.
extern "C" Q_DECL_EXPORT const char* __tsan_default_suppressions();
const char* __tsan_default_suppressions()
{
    return "race:QWaitCondition::~QWaitCondition";
}

// What a test hears of the thread. The signals arrive on the thread that emits them, so that no event loop is
// needed and the thread sanitizer sees every step.
class UnzipThreadTest : public ArchiveTest
{
protected:
    // An entry "blocked" fails as long as a folder stands at its place.
    void Make(const QByteArray& archive)
    {
        WriteFile(mArchive, archive);
        QDir().mkpath(mBlock);
        mThread = std::make_unique<UnzipThread>(mArchive, mTarget, 0);
        Hear(&UnzipThread::InitProgress, [](int count) { return "init %1"_q.arg(count); });
        Hear(&UnzipThread::Progress,
             [](int index, const QString& name) { return "%1 %2"_q.arg(index).arg(name); });
        Hear(&UnzipThread::DoneProgress, [] { return "done"_q; });
        Hear(&UnzipThread::NotifyError, [](const QString& text) { return text; });
    }

    void MakeUsual()
    {
        Make(BuildArchive({{"d/", ""}, {"d/a", "1"}, {"e/f/b", "2"}, {"blocked", "3"}, {"c", "4"}}));
    }

    template <typename Signal, typename Format>
    void Hear(Signal signal, Format format)
    {
        const auto note = [this, format](auto&&... values) {
            const std::lock_guard<std::mutex> lock(mMutex);
            mLines.append(format(values...));
            mNoted.notify_all();
        };
        QObject::connect(mThread.get(), signal, mThread.get(), note, Qt::DirectConnection);
    }

    QStringList GetLines()
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mLines;
    }

    // Waits until the thread has said a line that many times.
    void WaitFor(const QString& line, int times = 1)
    {
        std::unique_lock<std::mutex> lock(mMutex);
        mNoted.wait(lock, [&] { return mLines.count(line) >= times; });
    }

    const QString mBlock = GetTarget("blocked");
    const QString mError = "Can't write in %1. something that is no file has the name"_q.arg(mBlock);
    std::mutex mMutex;
    std::condition_variable mNoted;
    QStringList mLines;
    std::unique_ptr<UnzipThread> mThread;
};

// Files go before their folders, and folders that no entry names go, too; what was there before stays, beside
// what goes.
TEST_F(UnzipThreadTest, TheAnswerDecidesWhatBecomesOfTheRest)
{
    const std::tuple<ActionOnError, QStringList, QStringList> cases[] = {
        {ActionOnError::Skip, "4 c|done"_list, "blocked/|c|d/|d/._a|d/a|e/|e/f/|e/f/b|foreign"_list},
        {ActionOnError::Stop, "done"_list, "blocked/|d/|d/._a|d/a|e/|e/f/|e/f/b|foreign"_list},
        {ActionOnError::StopAndRemove, "2 e/f/b|1 d/a|0 d/|done"_list, "blocked/|d/|d/._a|foreign"_list},
    };
    for (const auto& [answer, lines, tree] : cases) {
        SCOPED_TRACE(static_cast<int>(answer));
        QDir(mTarget).removeRecursively();
        mLines.clear();
        MakeUsual();
        WriteFile(GetTarget("foreign"), "stays");
        WriteFile(GetTarget("d/._a"), "stays");
        mThread->start();
        WaitFor(mError);
        mThread->answer(answer);
        mThread->wait();
        EXPECT_EQ("init 5|0 d/|1 d/a|2 e/f/b|3 blocked"_list + QStringList(mError) + lines, GetLines());
        EXPECT_EQ(tree, ReadTree(mTarget).keys());
    }
}

TEST_F(UnzipThreadTest, AnyOtherAnswerTriesTheSameEntryAgain)
{
    MakeUsual();
    mThread->start();
    WaitFor(mError);
    mThread->answer(static_cast<ActionOnError>(77));
    WaitFor(mError, 2);
    QDir().rmdir(mBlock);
    mThread->answer(ActionOnError::Retry);
    mThread->wait();
    EXPECT_EQ("d/|d/a|e/f/b|blocked|c"_list, mThread->getExtractedFiles());
}

TEST_F(UnzipThreadTest, AnAnswerMayComeFromTheSlotItself)
{
    MakeUsual();
    QObject::connect(
        mThread.get(), &UnzipThread::NotifyError, mThread.get(),
        [this] { mThread->answer(ActionOnError::Skip); }, Qt::DirectConnection);
    mThread->answer(ActionOnError::StopAndRemove);  // before its question: forgotten
    mThread->start();
    mThread->wait();
    EXPECT_EQ("d/|d/a|e/f/b|c"_list, mThread->getExtractedFiles());
}

TEST_F(UnzipThreadTest, DestroyingItWhileItWaitsEndsIt)
{
    MakeUsual();
    mThread->start();
    WaitFor(mError);
    mThread.reset();
    EXPECT_EQ("done"_q, GetLines().last());
    EXPECT_EQ("blocked/|d/|d/a|e/|e/f/|e/f/b"_list, ReadTree(mTarget).keys());
}

TEST_F(UnzipThreadTest, DestroyingItWhileItExtractsLeavesNoPartialFile)
{
    Make(BuildArchive({{"0", QByteArray(30000000, 'x')}}));
    mThread->start();
    WaitFor("0 0"_q);
    mThread.reset();
    for (const QByteArray& content : ReadTree(mTarget))
        EXPECT_TRUE(content.isEmpty() || content.size() == 30000000);
}

TEST_F(UnzipThreadTest, ArchivesWithoutEntriesEndAtOnce)
{
    for (const QByteArray& bytes : {BuildArchive({}), QByteArray("no archive")}) {
        mLines.clear();
        Make(bytes);
        mThread->start();
        mThread->wait();
        EXPECT_EQ("init 0|done"_list, GetLines());
        EXPECT_EQ(bytes.startsWith("PK"), mThread->getOpenError().isEmpty());
    }
}
