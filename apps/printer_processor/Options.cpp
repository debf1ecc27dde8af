#include "apps/printer_processor/Options.h"

#include "apps/printer_processor/inbox/InboxCalls.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliMain.h"
#include "foundation/cli/NearestWord.h"
#include "foundation/core/GException.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QStandardPaths>

#include <limits>

namespace
{
const CliProgram cProgram = {
    "PrinterProcessorWin.exe",
    "receives what is sent to Hopboxes",
    "",
    {{"",
      "receives what is sent to Hopboxes",
      "It takes the jobs that the plug-in and \"hopboxctl submit\" send to your Hopboxes, and prints a line "
      "of JSON for "
      "each. It runs until it is stopped: Ctrl-C or SIGTERM. The program has the same name on Linux and "
      "Windows.",
      {},
      {{"inbox", "DIR", "copy each job into this folder; made when it is missing"},
       {"hopbox", "NAME",
        "take the jobs of this Hopbox only, by its name or its key; more than once for several",
        CliOption::Use::cRepeated},
       {"mode", "MODE",
        "the rights of what is copied, such as 0640 (not on Windows). Without it your umask says who may "
        "read it"},
       {"run", "COMMAND", "run this program for each job that was copied, see below"},
       {"run-argument", "TEXT", "an argument for it, before the path; more than once for several",
        CliOption::Use::cRepeated},
       {"retry", "SECONDS",
        "run a command that failed again after this time. Without it after a second, then after twice the "
        "time, up to a minute"},
       {"attempts", "N", "give up a command that failed N times, until the next start"},
       {"count", "N", "end after N messages"},
       {"timeout", "SECONDS", "end after this time"},
       {"check", "", "only look whether the call is right, and end"}},
      {{"PrinterProcessorWin.exe --inbox inbox --timeout 1",
        "Puts what arrives into the folder \"inbox\", for a second."},
       {"PrinterProcessorWin.exe --inbox inbox --hopbox Press --mode 0640 --run /usr/bin/gzip --timeout 1",
        "Compresses what arrives for the Hopbox \"Press\"; the group may read it."}}}},
    {{"the command of --run",
      "It is run once for each job, when that lies in the inbox, in the order in which they came, without a "
      "shell. Its last "
      "argument is the path of the file or folder; its standard input is the job in JSON, with \"id\". What "
      "it "
      "prints goes to standard error.\n\n"
      "When it ends with another status than 0, it is run again, and the next job waits. That holds over "
      "restarts, too: until it has succeeded, each start runs it again with the same \"id\". After that it "
      "is never run again for the job."},
     {"exit status",
      "  0  it was stopped, all messages came, or the time is up and no number of messages was asked for\n"
      "  1  it failed, or the time was up before the messages came\n"
      "  2  the call was wrong; standard error names the wrong word"},
     {"environment",
      "  MORVANE_ROOT  a folder for everything that belongs to Hopboxes, in place of your "
      "own"},
     cCliStyle}};

bool ParseCount(const QString& text, int& count)
{
    bool isNumber = false;
    count = text.toInt(&isNumber);
    return isNumber && count > 0;
}

bool ParseSeconds(const QString& text, int& milliseconds)
{
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    if (!isNumber || !(seconds > 0) || seconds > std::numeric_limits<int>::max() / 1000)
        return false;
    milliseconds = qMax(1, static_cast<int>(seconds * 1000));
    return true;
}

bool ParseFolder(const QString& text, GPathName& folder)
{
    if (text.isEmpty())
        return false;
    try {
        folder = GPathName(QDir::current().absoluteFilePath(text));
        return true;
    } catch (const GException&) {
        return false;
    }
}

// Rights with which the user can still read and write his own.
bool ParseMode(const QString& text, std::optional<unsigned>& mode)
{
    constexpr unsigned cAll = 0777;
    constexpr unsigned cOwner = 0600;
    bool isNumber = false;
    mode = text.toUInt(&isNumber, 8);
    return isNumber && *mode <= cAll && (*mode & cOwner) == cOwner && InboxCalls::HasModes();
}

// A batch file is not started by itself, but by the shell, which would read the path of a job as commands.
bool ParseProgram(const QString& text, QString& program)
{
    const QString suffix = QFileInfo(text).suffix().toLower();
    if (suffix == QLatin1String("bat") || suffix == QLatin1String("cmd"))
        return false;
    program = QStandardPaths::findExecutable(text);
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QFileInfo(text).absoluteFilePath());
    return !program.isEmpty();
}

// The name of a Hopbox, as tickets have it, for its name or key. What nothing is known of is taken for a
// name, with a warning; raises where the registry, which would know, can't be read.
GString GetHopboxName(const QString& name)
{
    const HopboxRegistry registry;
    const GString key = registry.FindKey(name);
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    if (record)
        return record->GetName(key);
    CliConsole::PrintWarning(QStringLiteral("No Hopbox is registered as \"%1\" yet.%2")
                                 .arg(name, AskForNearestWord(name, registry.GetActorNames())));
    return name;
}

// What is wrong with the options of the command; empty when nothing is.
QString TakeCommand(const CliCall& call, JobCommand& command)
{
    int milliseconds = 0;
    for (const char* option : {"run-argument", "retry", "attempts"}) {
        if (call.Has(option) && !call.Has("run"))
            return QStringLiteral("\"--%1\" is for \"--run\".").arg(QLatin1String(option));
    }
    if (call.Has("run") && !ParseProgram(call.Get("run"), command.program))
        return QStringLiteral("\"--run\" takes a program, not \"%1\".").arg(call.Get("run"));
    if (call.Has("retry") && !ParseSeconds(call.Get("retry"), milliseconds))
        return QStringLiteral("\"--retry\" takes a number of seconds above 0, not \"%1\".")
            .arg(call.Get("retry"));
    if (call.Has("attempts") && !ParseCount(call.Get("attempts"), command.attempts))
        return QStringLiteral("\"--attempts\" takes a number from 1 on, not \"%1\".")
            .arg(call.Get("attempts"));
    command.retry = std::chrono::milliseconds(milliseconds);
    command.arguments = call.GetAll("run-argument");
    return {};
}

// What is wrong with the values; empty when nothing is.
QString ReadFrom(const CliCall& call, Options& options)
{
    if (call.Has("inbox") && !ParseFolder(call.Get("inbox"), options.inbox))
        return QStringLiteral("\"--inbox\" takes a folder, not \"%1\".").arg(call.Get("inbox"));
    if (call.Has("count") && !ParseCount(call.Get("count"), options.count))
        return QStringLiteral("\"--count\" takes a number from 1 on, not \"%1\".").arg(call.Get("count"));
    if (call.Has("timeout") && !ParseSeconds(call.Get("timeout"), options.milliseconds))
        return QStringLiteral("\"--timeout\" takes a number of seconds above 0, not \"%1\".")
            .arg(call.Get("timeout"));
    for (const char* option : {"mode", "run"}) {
        if (call.Has(option) && !call.Has("inbox"))
            return QStringLiteral("\"--%1\" is for \"--inbox\".").arg(QLatin1String(option));
    }
    if (call.Has("mode") && !ParseMode(call.Get("mode"), options.mode))
        return QStringLiteral("\"--mode\" takes rights such as 0640, not \"%1\".").arg(call.Get("mode"));
    if (call.GetAll("hopbox").contains(QString()))
        return QStringLiteral("\"--hopbox\" takes a name, not \"\".");
    return TakeCommand(call, options.command);
}
}  // namespace

std::optional<int> Options::Read(int argc, char** argv, Options& options)
{
    CliCall call;
    if (const std::optional<int> status = AnswerCli(cProgram, argc, argv, call))
        return status;
    const QString fault = ReadFrom(call, options);
    if (!fault.isEmpty())
        return RefuseCli(cProgram, call.GetCommand(), fault);
    if (call.Has("check"))
        return cCliDone;
    std::vector<GString> names;
    for (const QString& name : call.GetAll("hopbox"))
        names.push_back(GetHopboxName(name));
    options.hopboxes = GPPIPCAddresses(names);
    return {};
}
