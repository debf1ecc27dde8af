#include "archive/UnzipThread.h"

#include "ZipSamples.h"
#include "tests/support/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Morvane;

// Read by the thread sanitizer. QThread waits for its end with a condition of Qt's, which the sanitizer does
// not see, and the condition's own end then looks like a race. Nothing else is passed over.
extern "C" Q_DECL_EXPORT const char* __tsan_default_suppressions();
const char* __tsan_default_suppressions()
{
    return "race:QWaitCondition::~QWaitCondition";
}

namespace
{
// What a test hears of the thread. The signals arrive on the thread that emits them, so that no event loop is
// needed and the thread sanitizer sees every step.
class UnzipThreadTest : public testing::Test
{
protected:
    UnzipThreadTest()
    {
        // The second entry fails as long as a folder stands at its place.
        WriteFile(mSandbox.GetPath(QStringLiteral("archive.zip")),
                  BuildArchive({{"d/", ""}, {"d/a", "1"}, {"blocked", "2"}, {"e/f/b", "3"}}));
        QDir().mkpath(GetBlock());
        mThread =
            std::make_unique<UnzipThread>(mSandbox.GetPath(QStringLiteral("archive.zip")), GetTarget(), 0);
        UnzipThread* thread = mThread.get();
        QObject::connect(
            thread, &UnzipThread::InitProgress, thread,
            [this](int count) { Note(QStringLiteral("init %1").arg(count)); }, Qt::DirectConnection);
        QObject::connect(
            thread, &UnzipThread::Progress, thread,
            [this](int index, const QString& name) { Note(QStringLiteral("%1 %2").arg(index).arg(name)); },
            Qt::DirectConnection);
        QObject::connect(
            thread, &UnzipThread::DoneProgress, thread, [this] { Note(QStringLiteral("done")); },
            Qt::DirectConnection);
        QObject::connect(
            thread, &UnzipThread::NotifyError, thread, [this](const QString& text) { Note(text); },
            Qt::DirectConnection);
    }

    QString GetTarget() const { return mSandbox.GetPath(QStringLiteral("target")); }
    QString GetBlock() const { return GetTarget() + QStringLiteral("/blocked"); }

    // The error of the entry that is blocked.
    QString GetError() const { return QStringLiteral("Can't write in %1.").arg(GetBlock()); }

    void Note(const QString& line)
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mLines.append(line);
        mNoted.notify_all();
    }

    QStringList GetLines()
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        return mLines;
    }

    // Waits until the thread has failed that many times.
    void WaitForErrors(int count)
    {
        std::unique_lock<std::mutex> lock(mMutex);
        mNoted.wait(lock, [&] { return mLines.count(GetError()) >= count; });
    }

    // Runs to the end, giving the answer to the first error.
    void RunWithAnswer(ActionOnError action)
    {
        mThread->start();
        WaitForErrors(1);
        mThread->answer(action);
        mThread->wait();
    }

    Sandbox mSandbox;
    std::mutex mMutex;
    std::condition_variable mNoted;
    QStringList mLines;
    std::unique_ptr<UnzipThread> mThread;
};

const QString cA = QStringLiteral("d/a");
const QString cB = QStringLiteral("e/f/b");
const QString cD = QStringLiteral("d/");
}  // namespace

TEST_F(UnzipThreadTest, SkipGoesOnWithTheNextEntry)
{
    RunWithAnswer(ActionOnError::Skip);
    EXPECT_EQ((QStringList{QStringLiteral("init 4"), QStringLiteral("0 d/"), QStringLiteral("1 d/a"),
                           QStringLiteral("2 blocked"), GetError(), QStringLiteral("3 e/f/b"),
                           QStringLiteral("done")}),
              GetLines());
    EXPECT_EQ((QStringList{cD, cA, cB}), mThread->getExtractedFiles());
    EXPECT_EQ("3", ReadFile(GetTarget() + QLatin1Char('/') + cB));
}

TEST_F(UnzipThreadTest, StopKeepsWhatWasExtracted)
{
    RunWithAnswer(ActionOnError::Stop);
    EXPECT_EQ((QStringList{QStringLiteral("blocked/"), cD, cA}), ReadTree(GetTarget()).keys());
    EXPECT_EQ(QStringLiteral("done"), GetLines().last());
}

TEST_F(UnzipThreadTest, StopAndRemoveTakesBackWhatWasExtracted)
{
    WriteFile(GetTarget() + QStringLiteral("/foreign"), "stays");
    RunWithAnswer(ActionOnError::StopAndRemove);
    EXPECT_EQ((QStringList{QStringLiteral("blocked/"), QStringLiteral("foreign")}),
              ReadTree(GetTarget()).keys());
    EXPECT_EQ(
        (QStringList{GetError(), QStringLiteral("1 d/a"), QStringLiteral("0 d/"), QStringLiteral("done")}),
        GetLines().mid(GetLines().size() - 4));
}

TEST_F(UnzipThreadTest, AnyOtherAnswerTriesTheSameEntryAgain)
{
    mThread->start();
    WaitForErrors(1);
    mThread->answer(static_cast<ActionOnError>(77));
    WaitForErrors(2);
    QDir().rmdir(GetBlock());
    mThread->answer(ActionOnError::Retry);
    mThread->wait();
    EXPECT_EQ((QStringList{cD, cA, QStringLiteral("blocked"), cB}), mThread->getExtractedFiles());
    EXPECT_EQ("2", ReadFile(GetBlock()));
}

TEST_F(UnzipThreadTest, FoldersThatNoEntryNamesAreTakenBackToo)
{
    WriteFile(mSandbox.GetPath(QStringLiteral("archive.zip")),
              BuildArchive({{"x/y/z", "1"}, {"blocked", "2"}}));
    RunWithAnswer(ActionOnError::StopAndRemove);
    EXPECT_EQ(QStringList(QStringLiteral("blocked/")), ReadTree(GetTarget()).keys());
}

TEST_F(UnzipThreadTest, AnAnswerMayComeFromTheSlotItself)
{
    QObject::connect(
        mThread.get(), &UnzipThread::NotifyError, mThread.get(),
        [this] { mThread->answer(ActionOnError::Skip); }, Qt::DirectConnection);
    mThread->answer(ActionOnError::StopAndRemove);  // before its question: forgotten
    mThread->start();
    mThread->wait();
    EXPECT_EQ((QStringList{cD, cA, cB}), mThread->getExtractedFiles());
}

TEST_F(UnzipThreadTest, DestroyingItWhileItWaitsEndsIt)
{
    mThread->start();
    WaitForErrors(1);
    mThread.reset();
    EXPECT_EQ(QStringLiteral("done"), GetLines().last());
    EXPECT_EQ((QStringList{QStringLiteral("blocked/"), cD, cA}), ReadTree(GetTarget()).keys());
}

TEST_F(UnzipThreadTest, DestroyingItWhileItExtractsLeavesNoPartialFile)
{
    QVector<RawEntry> entries;
    for (int number = 0; number < 300; ++number)
        entries.append({QByteArray::number(number), QByteArray(20000, 'x')});
    WriteFile(mSandbox.GetPath(QStringLiteral("archive.zip")), BuildArchive(entries));
    mThread->start();
    {
        std::unique_lock<std::mutex> lock(mMutex);
        mNoted.wait(lock, [this] { return mLines.size() > 20; });
    }
    mThread.reset();
    const QMap<QString, QByteArray> tree = ReadTree(GetTarget());
    for (auto file = tree.begin(); file != tree.end(); ++file)
        EXPECT_EQ(file.key() == QLatin1String("blocked/") ? 0 : 20000, file.value().size())
            << file.key().toStdString();
}

TEST_F(UnzipThreadTest, ArchivesWithoutEntriesEndAtOnce)
{
    for (const QByteArray& bytes : {BuildArchive({}), QByteArray("no archive")}) {
        mLines.clear();
        WriteFile(mSandbox.GetPath(QStringLiteral("none.zip")), bytes);
        UnzipThread thread(mSandbox.GetPath(QStringLiteral("none.zip")), GetTarget(), 0);
        QObject::connect(
            &thread, &UnzipThread::InitProgress, &thread, [this](int count) { Note(QString::number(count)); },
            Qt::DirectConnection);
        QObject::connect(
            &thread, &UnzipThread::DoneProgress, &thread, [this] { Note(QStringLiteral("done")); },
            Qt::DirectConnection);
        thread.start();
        thread.wait();
        EXPECT_EQ((QStringList{QStringLiteral("0"), QStringLiteral("done")}), GetLines());
        EXPECT_EQ(bytes == BuildArchive({}), thread.getOpenError().isEmpty());
    }
}
