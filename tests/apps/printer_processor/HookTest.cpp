#include "foundation/system/GProcessInfo.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <chrono>
#include <cstdio>
#include <thread>

// What receivers run for jobs here is this test program in a role.
static void Append(const QString& path, const QByteArray& line)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::Append) && file.write(line) == line.size());
}

class HookTest : public testing::Test
{
protected:
    QString GetPath(const char* name) const { return mSandbox.GetPath(QString::fromUtf8(name)); }

    QStringList GetCall(const char* role, const QStringList& more = {}) const
    {
        QStringList call = {"--inbox"_q, GetPath("in"), "--run"_q, QCoreApplication::applicationFilePath()};
        for (const QString& argument : {"--child"_q, QString::fromLatin1(role), mSandbox.GetPath()})
            call += {"--run-argument"_q, argument};
        return call + more;
    }

    // Submits a new file, with the number of times that the command is to fail for it.
    void Submit(const char* name, const char* failures = "0")
    {
        WriteFile(GetPath("jobs/") + QLatin1String(name), name);
        WriteFile(GetPath("failures-") + QLatin1String(name), failures);
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, GetPath("jobs/") + QLatin1String(name)));
    }

    // The next lines as "NAME saved", "NAME ran", "NAME waiting", "NAME given up"; in `ids` the job's.
    QStringList ReadLines(PrinterProcessor& receiver, int count)
    {
        QStringList lines;
        for (int at = 0; at < count; ++at) {
            const QJsonObject line = receiver.ReadLine();
            const QString name = QFileInfo(line.value("saved"_q).toString()).fileName();
            lines.append(name + (line.contains("ran"_q)       ? " ran"_q
                                 : line.contains("waiting"_q) ? " waiting"_q
                                 : line.contains("error"_q)   ? " given up"_q
                                                              : " saved"_q));
            mError = line.value("error"_q).toString();
            QString& id = mIDs[name];
            EXPECT_TRUE(id.isEmpty() || id == line.value("id"_q).toString());
            id = line.value("id"_q).toString();
        }
        return lines;
    }

    const Sandbox mSandbox;
    QMap<QString, QString> mIDs;
    QString mError;
};

// Writes down what it was called with, and fails as often as it was told.
CHILD_ROLE(TakeJob)
{
    const QString name = QFileInfo(arguments.at(1)).fileName();
    const QJsonObject job = QJsonDocument::fromJson(HearFromParent()).object();
    EXPECT_EQ(job.value("saved"_q).toString(), arguments.at(1));
    Append(arguments.at(0) + "/calls"_q,
           (QStringList{name, job.value("id"_q).toString(), job.value("PrinterName"_q).toString(),
                        QString::fromUtf8(ReadFile(arguments.at(1)))}
                .join(QLatin1Char(' ')) +
            QLatin1Char('\n'))
               .toUtf8());
    const QString count = arguments.at(0) + "/failures-"_q + name;
    const int failures = ReadFile(count).toInt();
    WriteFile(count, QByteArray::number(failures - 1));
    std::printf("first line\nno paper, %d more\n", failures);
    return failures > 0 || testing::Test::HasFailure() ? 3 : 0;
}

TEST_F(HookTest, CommandRunsInOrderUntilItSucceedsAndTheNextJobWaits)
{
    PrinterProcessor receiver(mSandbox, GetCall("TakeJob", "--retry|0.01|--count|3"_list));
    Submit("a", "2");
    EXPECT_EQ(ReadLines(receiver, 2), "a saved|a waiting"_list);
    EXPECT_EQ(mError, "The command ended with status 3. no paper, 2 more"_q);
    EXPECT_EQ(ReadLines(receiver, 2), "a waiting|a ran"_list);
    Submit("b");
    EXPECT_EQ(ReadLines(receiver, 2), "b saved|b ran"_list);
    Submit("c");
    EXPECT_EQ(ReadLines(receiver, 2), "c saved|c ran"_list);
    EXPECT_EQ(receiver.WaitForExit(), 0);
    QString calls;
    for (const char* name : {"a", "a", "a", "b", "c"})
        calls += "%1 %2 Press %1\n"_q.arg(QLatin1String(name), mIDs.value(QLatin1String(name)));
    EXPECT_EQ(ReadFile(GetPath("calls")), calls.toUtf8());
    QStringList ids = mIDs.values();
    EXPECT_EQ(ids.removeDuplicates(), 0);
}

TEST_F(HookTest, CommandThatIsGivenUpLetsTheNextOneGoAndComesAgainAtTheNextStart)
{
    const QStringList call = GetCall("TakeJob", "--retry|0.01|--attempts|2|--count|2"_list);
    {
        PrinterProcessor receiver(mSandbox, call);
        Submit("a", "3");
        EXPECT_EQ(ReadLines(receiver, 3), "a saved|a waiting|a given up"_list);
        Submit("b");
        EXPECT_EQ(ReadLines(receiver, 2), "b saved|b ran"_list);
        EXPECT_EQ(receiver.WaitForExit(), 1) << "a job waits";
    }
    PrinterProcessor next(mSandbox, call);
    EXPECT_EQ(ReadLines(next, 3), "a saved|a waiting|a ran"_list);
    EXPECT_EQ(QDir(GetPath("in")).entryList(QDir::Files), "a|b"_list);
}

TEST_F(HookTest, CommandThatIsNoneIsTold)
{
    QStringList call = GetCall("TakeJob");
    const QString copy = mSandbox.GetPath("command.exe"_q);
    ASSERT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), copy));
    call[call.indexOf("--run"_q) + 1] = copy;
    PrinterProcessor receiver(mSandbox, call);
    ASSERT_TRUE(QFile::remove(copy));
    Submit("a");
    EXPECT_EQ(ReadLines(receiver, 2), "a saved|a waiting"_list);
    EXPECT_TRUE(mError.startsWith("The command can't be started: "_q)) << mError.toStdString();
}

// Writes down its process, and goes on until it is ended.
CHILD_ROLE(RunLong)
{
    Append(arguments.at(0) + "/process"_q, QByteArray::number(QCoreApplication::applicationPid()) + '\n');
    std::this_thread::sleep_for(std::chrono::minutes(5));
    return 0;
}

TEST_F(HookTest, CommandEndsWithAReceiverThatIsKilled)
{
    PrinterProcessor receiver(mSandbox, GetCall("RunLong"));
    Submit("a");
    QByteArray line;
    while (!(line = ReadFile(GetPath("process"))).endsWith('\n'))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const uint32_t process = line.trimmed().toUInt();
    EXPECT_TRUE(GProcessInfo::IsAlive(process));
    receiver.Kill();
    for (int look = 0; look < 1000 && GProcessInfo::IsAlive(process); ++look)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(GProcessInfo::IsAlive(process));
}
