#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

#include <QRegularExpression>

// The real program, and what it tells about itself, tried in the shells that people have.
class CommandLine : public CommandTest
{
protected:
    using CommandTest::Run;

    int RunShell(const QStringList& call)
    {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString programs = QFileInfo(GetProgramPath("hopboxctl")).path();
        // In place of the service manager, which a test has no right to.
        WriteProgram(GetPath("bin/systemctl"), "#!/bin/sh\n");
        environment.insert("PATH"_q,
                           GetPath("bin:") + programs + QLatin1Char(':') + environment.value("PATH"_q));
        environment.insert("XDG_CONFIG_HOME"_q, GetPath("config"));
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(mSandbox.GetPath());
        shell.start(call.first(), call.mid(1));
        EXPECT_TRUE(shell.waitForFinished()) << call.first().toStdString() << " is missing";
        mOutput = shell.readAllStandardOutput();
        mError = shell.readAllStandardError();
        return shell.exitCode();
    }

    int RunShell(const QString& command) { return RunShell({"bash"_q, "-c"_q, command}); }

    // Runs a command on a terminal, where somebody types the answers once the question is there.
    int RunOnTerminal(const QString& command, const QString& question, const char* answers)
    {
        return RunShell(
            "rm -f typed done; (until grep -qs '%2' typed; do sleep 0.1; done; printf '%3'; "
            "until [ -e done ]; do sleep 0.1; done) | "
            "script -qfec 'trap : INT; %1; s=$?; touch done; exit $s' /dev/null > typed; s=$?; cat typed; exit $s"_q
                .arg(command, question, QLatin1String(answers)));
    }

    // The commands that the help lists.
    QStringList ListCommands()
    {
        EXPECT_EQ(Run({"--help"_q}), 0);
        const QString help = QString::fromUtf8(mOutput);
        const QString list = help.section("\ncommands:\n"_q, 1).section("\n\n"_q, 0, 0);
        QStringList commands;
        for (const QString& line : list.split(QLatin1Char('\n')))
            commands.append(line.mid(2).section("  "_q, 0, 0));
        return commands;
    }

    // A Hopbox "Press" and the files that the examples name, whatever was there.
    void Prepare(bool withHopbox)
    {
        for (const char* folder : {"AppData", "config"})
            QDir(GetPath(folder)).removeRecursively();
        for (const char* name : {"Press.joboptions", "Coated.joboptions"})
            WriteFile(GetPath(name), "<< /CompatibilityLevel 1.4 >> setdistillerparams");
        for (const char* name : {"Report.pdf", "Package/Report.pdf", "Package/Links/a.png", "Links/b.png"})
            WriteFile(GetPath(name), "x");
        WriteFile(
            GetPath("General.uprefs"),
            "#BEGINPREFS\r\n\"General\" #BEGINDICT\r\n\"Language\" \"deDE\"\r\n#ENDDICT\r\n#ENDPREFS\r\n");
        WriteFile(GetPath("Logo"), "x");
        WriteFile(
            GetPath("._Logo"),
            QByteArray("\0\5\26\7\0\2\0\0................\0\1\0\0\0\11\0\0\0\46\0\0\0\10", 38) + "PDF CARO");
        EXPECT_EQ(RunShell("hopboxctl zip create Package.zip Package"_q), 0);
        QFile::remove(GetPath("Press.hopbox"));
        EXPECT_TRUE(RunShell("hopboxctl create Old --job-options Press.joboptions && "
                             "hopboxctl export Old Press.hopbox && hopboxctl delete Old"_q) == 0);
        EXPECT_TRUE(!withHopbox || RunShell("hopboxctl create Press --job-options Press.joboptions"_q) == 0);
    }
};

TEST_F(CommandLine, EveryCommandHasHelpAndItsExamplesWork)
{
    PrinterProcessor receiver(mSandbox, {});
    const QStringList commands = ListCommands();
    ASSERT_GT(commands.size(), 15);
    for (const QString& command : commands) {
        SCOPED_TRACE(command.toStdString());
        ASSERT_EQ(Run(command.split(QLatin1Char(' ')) << "--help"_q), 0);
        const QString help = QString::fromUtf8(mOutput);
        EXPECT_TRUE(help.contains("usage:\n  hopboxctl "_q + command) && help.contains("  --json "_q));
        EXPECT_TRUE(mError.isEmpty());
        const QString examples = help.section("\nexamples:\n"_q, 1);
        EXPECT_FALSE(examples.isEmpty());
        QRegularExpressionMatchIterator each =
            QRegularExpression("^  (hopboxctl .*)$"_q, QRegularExpression::MultilineOption)
                .globalMatch(examples);
        const auto prepare = [&] {
            Prepare(command != "create"_q);
            if (command == "receiver remove"_q)
                RunShell("hopboxctl receiver install Press --inbox Inbox"_q);
        };
        while (each.hasNext()) {
            const QString call = each.next().captured(1);
            prepare();
            EXPECT_EQ(RunShell(call), 0) << call.toStdString();
            prepare();
            EXPECT_EQ(RunShell(call + " --json"_q), 0) << call.toStdString();
            EXPECT_EQ(GetAnswer().keys(), (QStringList{"errors"_q, "ok"_q, "result"_q, "warnings"_q}))
                << call.toStdString();
        }
    }
    EXPECT_EQ(Run({"--manual"_q}), 0);
    for (const QString& command : commands)
        EXPECT_TRUE(mOutput.contains(".SS hopboxctl " + command.toUtf8()));
    EXPECT_EQ(RunShell("hopboxctl --manual | groff -man -ww -z 2>&1"_q), 0);
    EXPECT_EQ(mOutput, "") << "the page of the manual has no fault";
}

TEST_F(CommandLine, OutputThatCannotBeWrittenIsAFailure)
{
    for (const char* call : {"list", "list --json", "--help", "list --help", "--version", "--manual",
                             "--completion bash", "origins --json", "channel watch"}) {
        EXPECT_EQ(RunShell("timeout 20 hopboxctl "_q + QLatin1String(call) + " > /dev/full"_q), 1) << call;
        EXPECT_EQ(mError, "hopboxctl: The output can't be written: No space left on device.\n");
    }
}

TEST_F(CommandLine, ColoursAreForTerminalsAndAsTheUserSays)
{
    const std::pair<const char*, bool> cases[] = {
        {"hopboxctl --help", false},
        {"CLICOLOR_FORCE=1 hopboxctl --help", true},
        {"CLICOLOR_FORCE=1 NO_COLOR=1 hopboxctl --help", false},
        {"CLICOLOR_FORCE=0 hopboxctl --help", false},
        {"TERM=xterm script -qec 'hopboxctl --help' /dev/null", true},
        {"TERM=dumb script -qec 'hopboxctl --help' /dev/null", false},
        {"TERM=xterm NO_COLOR=1 script -qec 'hopboxctl --help' /dev/null", false},
    };
    for (const auto& [call, isBold] : cases) {
        EXPECT_EQ(RunShell("unset NO_COLOR CLICOLOR CLICOLOR_FORCE; "_q + QLatin1String(call)), 0);
        EXPECT_EQ(mOutput.contains("\x1b[1m"), isBold) << call;
        EXPECT_TRUE(mOutput.contains("commands:"));
    }
}

TEST_F(CommandLine, AWordThatIsNoTextIsRefused)
{
    EXPECT_EQ(RunShell("LC_ALL=C.UTF-8 hopboxctl create $'a\\xff' --job-options Press.joboptions"_q), 2);
    EXPECT_TRUE(mError.contains("is no text in this system's encoding."));
}

TEST_F(CommandLine, QuestionsAreAskedOnTheTerminal)
{
    for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"})
        WriteFile(GetPath(name), QByteArray("content of ") + name);
    ASSERT_EQ(RunShell("hopboxctl zip create made.zip ?.txt --level 0"_q), 0);
    QByteArray bytes = ReadFile(GetPath("made.zip"));
    WriteFile(GetPath("made.zip"),
              bytes.replace("content of b", "CONTENT of b").replace("content of c", "CONTENT of c"));
    const std::tuple<const char*, int, int> cases[] = {
        {"s\\ns\\n", 2, 2}, {"a\\n", 1, 2}, {"x\\ng\\na\\n", 3, 2}, {"t\\n", 1, 1}, {"r\\n", 1, 0},
    };
    for (const auto& [answers, questions, files] : cases) {
        QDir(GetPath("out")).removeRecursively();
        EXPECT_EQ(RunOnTerminal("hopboxctl zip extract made.zip out"_q, "skip"_q, answers), 1);
        EXPECT_EQ(mOutput.count("skip [a]ll"), questions) << answers;
        EXPECT_EQ(ReadTree(GetPath("out")).size(), files) << answers;
        EXPECT_TRUE(mOutput.contains(" %  ") && mOutput.contains(" MB/s "));
    }
    QDir(GetPath("out")).removeRecursively();
    EXPECT_EQ(RunShell("setsid -w hopboxctl zip extract made.zip out --on-error ask"_q), 1);
    EXPECT_EQ(ReadTree(GetPath("out")).size(), 2) << "without a terminal, what fails is skipped";
    for (const char* call : {"create secret.zip a.txt", "test secret.zip"}) {
        EXPECT_EQ(RunOnTerminal("hopboxctl zip %1 --ask-password"_q.arg(QLatin1String(call)), "Password"_q,
                                "geheim\\n"),
                  0);
        EXPECT_FALSE(mOutput.contains("geheim")) << "what is typed is not shown";
    }
    EXPECT_TRUE(mOutput.contains("Password: ") && mOutput.contains("1 entries, all whole."));
    EXPECT_EQ(RunOnTerminal("stty -a; hopboxctl zip test secret.zip --ask-password; stty -a; false"_q,
                            "Password"_q, "\\003"),
              1);
    EXPECT_FALSE(mOutput.contains(" -echo ")) << "Ctrl-C leaves a terminal that shows what is typed";
    EXPECT_EQ(mOutput.count(" echo "), 2);
    EXPECT_EQ(RunOnTerminal("hopboxctl zip extract made.zip out"_q, "skip"_q, "\\003"), 1);
    EXPECT_TRUE(mOutput.contains("Stopped.") && !mOutput.contains("Nobody"));
    EXPECT_EQ(RunShell("echo geheim | hopboxctl zip test secret.zip --password-file -"_q), 0);
    EXPECT_EQ(RunShell("setsid -w hopboxctl zip test secret.zip --ask-password"_q), 1) << "no terminal";
    EXPECT_EQ(RunShell("hopboxctl zip test secret.zip --password other"_q), 1);
}

TEST_F(CommandLine, ShellsCompleteCommandsOptionsFilesAndNames)
{
    Prepare(true);
    ASSERT_EQ(RunShell("hopboxctl rename Press 'Press, coated'"_q), 0);
    // typed, completions: with '|' between
    const std::pair<const char*, const char*> cases[] = {
        {"cr", "create"},
        {"zip e", "extract"},
        {"create --job-o", "--job-options"},
        {"create --job-options C", "Coated.joboptions"},
        {"show ", "Press, coated"},
        {"set P", "Press, coated"},
        {"zip list Pack", "Package|Package.zip"},
        {"zip extract x Pack", "Package"},
    };
    for (const auto& [typed, completions] : cases) {
        SCOPED_TRACE(typed);
        const QString words = QLatin1String(typed);
        ASSERT_EQ(
            RunShell(QStringLiteral("source <(hopboxctl --completion bash); COMP_WORDS=(hopboxctl %1); "
                                    "COMP_CWORD=%2; _hopboxctl; printf '%s\\n' \"${COMPREPLY[@]}\" | sort")
                         .arg(words + (words.endsWith(QLatin1Char(' ')) ? "''"_q : QString()))
                         .arg(words.count(QLatin1Char(' ')) + 1)),
            0);
        EXPECT_EQ(mOutput.trimmed().replace('\n', '|').toStdString(), completions);
        ASSERT_EQ(RunShell({"fish"_q, "-N"_q, "-c"_q,
                            QStringLiteral("hopboxctl --completion fish | source; complete -C 'hopboxctl %1'")
                                .arg(words)}),
                  0);
        EXPECT_TRUE(mOutput.contains(QByteArray(completions).split('|').first()));
    }
    ASSERT_EQ(RunShell("hopboxctl --completion zsh > _hopboxctl; zsh -n _hopboxctl"_q), 0);
    // What zsh is asked to offer: its own functions say what they were given.
    const QString ask =
        "_arguments() { print -r -- \"$*\" }; _describe() { print -r -- $commands }; compdef() {}; "
        "source ./_hopboxctl; words=(hopboxctl %1 ''); CURRENT=$#words; _hopboxctl"_q;
    const std::pair<const char*, const char*> offers[] = {
        {"", "create:make a Hopbox and print its key"},
        {"zip", "extract:extract an archive, or some of its entries"},
        {"create", "--job-options=[the PDF settings, a job options file]:FILE:_files"},
        {"zip extract", "--json[print the answer as JSON] :ARCHIVE:_files :DIR:_files -/ *:ENTRY:"},
    };
    for (const auto& [call, offer] : offers) {
        ASSERT_EQ(RunShell({"zsh"_q, "-f"_q, "-c"_q, ask.arg(QLatin1String(call))}), 0);
        EXPECT_TRUE(mOutput.contains(offer));
    }
}
