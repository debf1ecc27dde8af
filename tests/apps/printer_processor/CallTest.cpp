#include "hopbox/HopboxRegistry.h"
#include "tests/support/Test.h"

#include <QProcess>

TEST(ReceiverCallTest, AWrongCallIsNamedAndHelpIsGiven)
{
    const Sandbox sandbox;
    const QString program = GetProgramPath("PrinterProcessorWin.exe");
    const QString batchFile = sandbox.GetPath("a.BAT"_q);
    ASSERT_TRUE(QFile::copy(program, batchFile));  // a program but for its name
    ASSERT_TRUE(HopboxRegistry().AddEntry("Press"_q, HopboxRegistryEntry()));
    const std::tuple<QStringList, int, const char*, const char*> cases[] = {
        {"--help"_list, 0, "usage:\n  PrinterProcessorWin.exe [--inbox", ""},
        {"--version"_list, 0, "PrinterProcessorWin.exe ", ""},
        {"--manual"_list, 0, ".TH PrinterProcessorWin.exe 1", ""},
        {"--completion|bash"_list, 0,
         "complete -o filenames -F _PrinterProcessorWin_exe PrinterProcessorWin.exe", ""},
        {"--inbx=a"_list, 2, "", "There is no option \"--inbx\". Did you mean \"--inbox\"?"},
        {"--inbox="_list, 2, "", "\"--inbox\" takes a folder, not \"\"."},
        {"--inbox"_list, 2, "", "\"--inbox\" needs a value"},
        {"--inbox|"_list, 2, "", "\"--inbox\" takes a folder"},
        {{"--inbox"_q, program}, 1, "", "PrinterProcessorWin.exe"},
        {"--count|1x"_list, 2, "", "not \"1x\"."},
        {"--timeout|-1"_list, 2, "", "not \"-1\"."},
        {"--timeout|nan"_list, 2, "", "not \"nan\"."},
        {"--count|0"_list, 2, "", "\"--count\" takes a number from 1 on, not \"0\"."},
        {"--timeout|soon"_list, 2, "", "\"--timeout\" takes a number of seconds above 0, not \"soon\"."},
        {"--timeout|1e300"_list, 2, "", "not \"1e300\"."},
        {"--inbox=in|--mode=banana"_list, 2, "", "\"--mode\" takes rights such as 0640, not \"banana\"."},
        {"--inbox=in|--mode=0440"_list, 2, "", "not \"0440\"."},
        {"--inbox=in|--mode=1777"_list, 2, "", "not \"1777\"."},
        {"--mode=0640"_list, 2, "", "\"--mode\" is for \"--inbox\"."},
        {"--run=x"_list, 2, "", "\"--run\" is for \"--inbox\"."},
        {"--inbox=in|--run=no-such-program"_list, 2, "",
         "\"--run\" takes a program, not \"no-such-program\"."},
        {{"--inbox=in"_q, "--run="_q + batchFile}, 2, "", "\"--run\" takes a program"},
        {"--inbox=in|--retry=1"_list, 2, "", "\"--retry\" is for \"--run\"."},
        {"--inbox=in|--attempts=1"_list, 2, "", "\"--attempts\" is for \"--run\"."},
        {"--inbox=in|--run-argument=1"_list, 2, "", "\"--run-argument\" is for \"--run\"."},
        {{"--inbox=in"_q, "--run="_q + program, "--retry=soon"_q}, 2, "", "not \"soon\"."},
        {{"--inbox=in"_q, "--run="_q + program, "--attempts=0"_q}, 2, "", "not \"0\"."},
        {"--hopbox="_list, 2, "", "\"--hopbox\" takes a name, not \"\"."},
        {"--inbox=unmade|--check"_list, 0, "", ""},
        {"--count|0|--check"_list, 2, "", "not \"0\"."},
        {"inbox"_list, 2, "", "Unexpected \"inbox\"."},
        {"--hopbox=Prss|--timeout=0.01"_list, 0, "",
         "warning: No Hopbox is registered as \"Prss\" yet. Did you mean \"Press\"?"},
        {"--inbox=in|--timeout=0.01"_list, 0, "", "ready as process"},
        {"--count=1|--timeout=0.01"_list, 1, "", "ready as process"},
    };
    for (const auto& [call, status, told, message] : cases) {
        SCOPED_TRACE(call.join(QLatin1Char(' ')).toStdString());
        QProcess process;
        process.setWorkingDirectory(sandbox.GetPath());
        process.start(GetProgramPath("PrinterProcessorWin.exe"), call);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), status);
        const QByteArray output = process.readAllStandardOutput().replace("\r\n", "\n");
        const QByteArray error = process.readAllStandardError();
        EXPECT_TRUE(output.contains(told) && error.contains(message))
            << output.toStdString() << error.toStdString();
    }
    EXPECT_TRUE(QFileInfo(sandbox.GetPath("in"_q)).isDir());
    EXPECT_FALSE(QFileInfo::exists(sandbox.GetPath("unmade"_q)));
}

// It would take the key for a name, and no job ever.
TEST(ReceiverCallTest, NoHopboxIsServedWhileTheRegistryCannotBeRead)
{
    const Sandbox sandbox;
    QDir().mkpath(
        sandbox.GetPath("AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs"_q));
    QProcess process;
    process.start(GetProgramPath("PrinterProcessorWin.exe"), "--hopbox|Press|--timeout|1"_list);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    const QByteArray error = process.readAllStandardError();
    EXPECT_TRUE(error.contains("can't be read") && !error.contains("ready")) << error.toStdString();
}
