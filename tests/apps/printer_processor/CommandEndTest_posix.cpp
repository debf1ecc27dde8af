#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

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
