#include "apps/printer_processor/Options.h"

#include "foundation/cli/CliMain.h"
#include "foundation/core/GException.h"

#include <QDir>

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
       {"count", "N", "end after N messages"},
       {"timeout", "SECONDS", "end after this time"}},
      {{"PrinterProcessorWin.exe --inbox inbox --timeout 1",
        "Puts what arrives into the folder \"inbox\", for a second."}}}},
    {{"exit status",
      "  0  it was stopped, all messages came, or the time is up and no number of messages was asked for\n"
      "  1  it failed, or the time was up before the messages came\n"
      "  2  the call was wrong; standard error names the wrong word"},
     {"environment",
      "  MORVANE_ROOT  a folder for everything that belongs to Hopboxes, in place of your own"}}};

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

// What is wrong with the values; empty when nothing is.
QString Take(const CliCall& call, Options& options)
{
    if (call.Has("inbox") && !ParseFolder(call.Get("inbox"), options.inbox))
        return QStringLiteral("\"--inbox\" takes a folder, not \"%1\".").arg(call.Get("inbox"));
    if (call.Has("count") && !ParseCount(call.Get("count"), options.count))
        return QStringLiteral("\"--count\" takes a number from 1 on, not \"%1\".").arg(call.Get("count"));
    if (call.Has("timeout") && !ParseSeconds(call.Get("timeout"), options.milliseconds))
        return QStringLiteral("\"--timeout\" takes a number of seconds above 0, not \"%1\".")
            .arg(call.Get("timeout"));
    return {};
}
}  // namespace

std::optional<int> Options::Read(int argc, char** argv, Options& options)
{
    CliCall call;
    if (const std::optional<int> status = AnswerCli(cProgram, argc, argv, call))
        return status;
    const QString fault = Take(call, options);
    return fault.isEmpty() ? std::nullopt : std::make_optional(RefuseCli(cProgram, call.GetCommand(), fault));
}
