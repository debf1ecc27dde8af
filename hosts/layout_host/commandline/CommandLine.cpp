#include "hosts/layout_host/commandline/CommandLine.h"

#include "foundation/cli/CliMain.h"

namespace
{
constexpr int cLongestRun = 24 * 60 * 60;  // seconds

const CliProgram cProgram = {
    "layout-host",
    "shows documents, and exports them to Hopboxes",
    "",
    {{"",
      "shows documents, and exports them to Hopboxes",
      "Without an option it opens its window. With --export or --export-book it exports without a window: it "
      "answers "
      "the export dialog as a person would, and prints a JSON object that says what became of it.",
      {{"FILE", "a document or a book to open in the window", CliArgument::Count::cAny}},
      {{"export", "DOCUMENT", "export this document"},
       {"export-book", "BOOK", "export this book"},
       {"hopbox", "NAME",
        "the Hopbox: its name or its key, as \"hopboxctl list\" shows them, or its text in the list of the "
        "dialog"},
       {"pages", "RANGE", "the pages, as 1-3,8; all without it"},
       {"package", "", "send a file package too"},
       {"options", "open", "unfold the options of the dialog"},
       {"force", "",
        "export even if an image or a colour profile is missing, or an image has too few dots for the job "
        "options"},
       {"timeout", "SECONDS", "take no longer than this; 300 without it"},
       {"check-job-options", "FILE",
        "print, as JSON, the settings of job options that an export can't honour as they stand"}},
      {{"layout-host --export Report.sla --hopbox Press --pages 1-3",
        "Exports three pages to the Hopbox \"Press\"."},
       {"layout-host --check-job-options Press.joboptions",
        "Says what an export can't do as the job options ask."}}}},
    {{"exit status",
      "  0  the export succeeded, or the window was closed\n"
      "  1  it failed; the JSON object or standard error says why\n"
      "  2  the call was wrong; standard error names the wrong word"},
     {"environment",
      "  HOPBOX_PLUGIN        the file of the plug-in\n"
      "  LAYOUT_HOST_SCRIBUS  the program scribus\n"
      "  MORVANE_ROOT         a folder for everything that belongs to Hopboxes, in place of your "
      "own"},
     cCliStyle}};

bool ParseSeconds(const QString& text, int& seconds)
{
    bool isNumber = false;
    seconds = text.toInt(&isNumber);
    return isNumber && seconds > 0 && seconds <= cLongestRun;
}

// What is wrong with the options together; empty when nothing is.
QString FindFault(const CliCall& call)
{
    const bool isExport = call.Has("export") || call.Has("export-book");
    for (const char* option : {"hopbox", "pages", "package", "options", "force", "timeout"}) {
        if (call.Has(option) && !isExport)
            return QStringLiteral("\"--%1\" needs \"--export\" or \"--export-book\".")
                .arg(QLatin1String(option));
    }
    if (call.Has("check-job-options") && (isExport || !call.GetArguments().isEmpty()))
        return QStringLiteral("\"--check-job-options\" stands alone.");
    if (call.Has("check-job-options") && call.Get("check-job-options").isEmpty())
        return QStringLiteral("\"--check-job-options\" takes a file, not \"\".");
    if (!isExport)
        return {};
    if (call.GetAll("export").size() + call.GetAll("export-book").size() > 1)
        return QStringLiteral("One export at a time.");
    if (!call.GetArguments().isEmpty())
        return QStringLiteral("Unexpected \"%1\".").arg(call.GetArgument(0));
    if (call.Get("hopbox").isEmpty())
        return QStringLiteral("--hopbox NAME is missing.");
    if (call.Has("export-book") && call.Has("pages"))
        return QStringLiteral("A book is exported as a whole, without \"--pages\".");
    if (call.Has("options") && call.Get("options") != QLatin1String("open"))
        return QStringLiteral("\"--options\" can only be \"open\".");
    return {};
}
}  // namespace

std::optional<int> CommandLine::Read(int argc, char** argv, CommandLine& line)
{
    CliCall call;
    if (const std::optional<int> status = AnswerCli(cProgram, argc, argv, call))
        return status;
    QString fault = FindFault(call);
    if (fault.isEmpty() && call.Has("timeout") && !ParseSeconds(call.Get("timeout"), line.seconds))
        fault = QStringLiteral("\"--timeout\" takes seconds, from 1 to %1, not \"%2\".")
                    .arg(QString::number(cLongestRun), call.Get("timeout"));
    if (!fault.isEmpty())
        return RefuseCli(cProgram, call.GetCommand(), fault);
    line.jobOptions = call.Get("check-job-options");
    line.isExport = call.Has("hopbox");
    line.isBook = call.Has("export-book");
    line.files = call.GetArguments() + call.GetAll("export") + call.GetAll("export-book");
    line.choices.hopbox = call.Get("hopbox");
    if (call.Has("pages"))
        line.choices.pages = call.Get("pages");
    line.choices.includesPackage = call.Has("package");
    line.isForced = call.Has("force");
    line.choices.opensOptions = call.Has("options");
    return {};
}
