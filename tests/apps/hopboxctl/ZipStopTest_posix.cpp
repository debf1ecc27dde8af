#include "CommandFixture.h"

#include <chrono>
#include <csignal>
#include <thread>

// Whether the process has a file open whose path, or the folder that is to have it, begins like that.
static bool HasOpen(const QProcess& process, const QString& begin)
{
    for (const QFileInfo& file :
         QDir("/proc/%1/fd"_q.arg(process.processId())).entryInfoList(QDir::System | QDir::Files)) {
        if (file.symLinkTarget().startsWith(begin))
            return true;
    }
    return false;
}

// Far more than is packed before the stop is seen.
TEST_F(CommandTest, PackingThatIsStoppedLeavesTheArchiveThatWasThere)
{
    WriteFile(GetPath("a.txt"), "1");
    ASSERT_EQ(Run({"zip"_q, "create"_q, "made.zip"_q, "a.txt"_q}), 0);
    const QByteArray before = ReadFile(GetPath("made.zip"));
    QFile large(GetPath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64(40) << 30));
    const QStringList names = QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden);
    for (const char* command : {"create", "add"}) {
        QProcess process;
        process.setWorkingDirectory(mSandbox.GetPath());
        process.start(GetProgramPath("hopboxctl"),
                      {"zip"_q, QLatin1String(command), "made.zip"_q, "large"_q, "--level"_q, "0"_q});
        ASSERT_TRUE(process.waitForStarted());
        // Until it has begun with the file, whose first pass writes nothing.
        while (!HasOpen(process, large.fileName()) && process.state() == QProcess::Running)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        kill(static_cast<pid_t>(process.processId()), SIGINT);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_TRUE(process.readAllStandardError().contains("The packing was stopped.")) << command;
        EXPECT_EQ(ReadFile(GetPath("made.zip")), before);
        EXPECT_EQ(QDir(mSandbox.GetPath()).entryList(QDir::AllEntries | QDir::Hidden), names);
    }
}

TEST_F(CommandTest, ExtractionThatIsStoppedLeavesWhatIsWhole)
{
    WriteFile(GetPath("a.txt"), "1");
    QFile large(GetPath("large"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64(400) << 20));
    ASSERT_EQ(Run({"zip"_q, "create"_q, "made.zip"_q, "a.txt"_q, "large"_q, "--level"_q, "1"_q}), 0);
    const QDir folder(GetPath("out"));
    const auto list = [&] { return ListFolder(folder.path()); };
    for (const QStringList& more : {QStringList(), QStringList{"--on-error"_q, "skip"_q}}) {
        QProcess process;
        process.setWorkingDirectory(mSandbox.GetPath());
        process.start(GetProgramPath("hopboxctl"),
                      QStringList{"zip"_q, "extract"_q, "made.zip"_q, "out"_q} + more);
        ASSERT_TRUE(process.waitForStarted());
        while (!(list() == QStringList("a.txt"_q) && HasOpen(process, GetPath("out/"))) &&
               !process.waitForFinished(2)) {
        }
        kill(static_cast<pid_t>(process.processId()), SIGINT);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 1);
        EXPECT_EQ(list(), QStringList("a.txt"_q)) << process.readAllStandardError().constData();
        QDir(folder).removeRecursively();
    }
}
