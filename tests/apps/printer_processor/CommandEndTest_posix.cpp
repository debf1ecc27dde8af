#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <sys/stat.h>

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

// A list of what is left out that no pipe takes at once.
TEST(CommandEnd, WhatACommandReadsIsWholeWhateverBecomesOfTheReceiver)
{
    const Sandbox sandbox;
    const QString job = sandbox.GetPath("job"_q);
    WriteFile(job + "/a.pdf"_q, "1");
    for (int number = 0; number < 600; ++number) {
        const QString name = "%1/%2%3"_q.arg(job, QString(150, QLatin1Char('x'))).arg(number);
        ASSERT_EQ(mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    }
    const QString script =
        "cd '%1'; trap '' TERM; : > begun; while kill -0 $PPID 2> /dev/null; do sleep 0.01; done; cat > part; mv part read"_q
            .arg(sandbox.GetPath());
    PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("in"_q), "--run"_q, "/bin/sh"_q,
                                        "--run-argument=-c"_q, "--run-argument"_q, script});
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, job));
    // It waits for whoever reads what it says.
    EXPECT_TRUE(receiver.ReadErrorLine().contains("neither files nor folders"));
    EXPECT_TRUE(receiver.ReadLine().contains("saved"_q));
    while (!QFile::exists(sandbox.GetPath("begun"_q)))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    receiver.Kill();
    while (!QFile::exists(sandbox.GetPath("read"_q)))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const QJsonObject read = QJsonDocument::fromJson(ReadFile(sandbox.GetPath("read"_q))).object();
    EXPECT_EQ(read.value("left_out"_q).toArray().size(), 600);
    EXPECT_FALSE(read.value("id"_q).toString().isEmpty());
}
