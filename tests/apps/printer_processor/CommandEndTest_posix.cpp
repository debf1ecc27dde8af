#include "apps/printer_processor/JobProcess.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

TEST(CommandEnd, CommandIsAskedToEndBeforeItIsEndedByForce)
{
    const std::pair<const char*, const char*> cases[] = {{"echo asked >> said; exit 1", "asked\n"}, {"", ""}};
    for (const auto& [onRequest, heard] : cases) {
        const Sandbox sandbox;
        const QString process = sandbox.GetPath("process"_q);
        const QString script =
            "cd '%1'; trap '%2' TERM; echo $$ > new; mv new process; while :; do sleep 0.02; done"_q.arg(
                sandbox.GetPath(), QLatin1String(onRequest));
        PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("in"_q), "--run"_q, "/bin/sh"_q,
                                            "--run-argument=-c"_q, "--run-argument"_q, script});
        WriteFile(sandbox.GetPath("a.pdf"_q), "1");
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, sandbox.GetPath("a.pdf"_q)));
        while (!QFile::exists(process))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        kill(static_cast<pid_t>(receiver.GetProcessID()), SIGTERM);
        EXPECT_EQ(receiver.WaitForExit(), 0);
        EXPECT_EQ(kill(ReadFile(process).trimmed().toInt(), SIGKILL), -1) << "it goes on";
        QFile said(sandbox.GetPath("said"_q));
        EXPECT_EQ(said.open(QIODevice::ReadOnly) ? said.readAll() : QByteArray(), heard);
    }
}

namespace
{
// Whose parent is gone before the system has been told what to do then.
class Orphan : public JobProcess
{
protected:
    void setupChildProcess() override
    {
        ::kill(mParent, SIGKILL);
        while (getppid() == mParent)
            usleep(1000);
        JobProcess::setupChildProcess();
    }

private:
    const pid_t mParent = getpid();
};
}  // namespace

CHILD_ROLE(LeaveOrphan)
{
    Orphan process;
    process.Start("/bin/sh"_q, {"-c"_q, "echo ran >&"_q + arguments.first()});
    return 0;
}

TEST(CommandEnd, CommandDoesNotRunForAReceiverThatIsGoneAlready)
{
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    ChildProcess receiver("LeaveOrphan"_q, {QString::number(ends[1])});
    close(ends[1]);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0) << "the command has run";
    close(ends[0]);
    EXPECT_EQ(receiver.WaitForExit(), -1);
}
