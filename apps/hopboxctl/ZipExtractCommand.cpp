#include "apps/hopboxctl/ZipCommand.h"

#include "apps/hopboxctl/ZipOptions.h"
#include "apps/hopboxctl/ZipOutput.h"
#include "archive/UnzipThread.h"
#include "archive/ZipHelper.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliStop.h"

#include <QEventLoop>
#include <QRegularExpression>
#include <QTimer>

#include <atomic>
#include <map>
#include <numeric>

using namespace Morvane;

namespace
{
constexpr int cPollInterval = 50;  // milliseconds

const std::map<QString, ActionOnError>& getActions()
{
    static const std::map<QString, ActionOnError> actions = {
        {QStringLiteral("skip"), ActionOnError::Skip},
        {QStringLiteral("stop"), ActionOnError::Stop},
        {QStringLiteral("remove"), ActionOnError::StopAndRemove},
    };
    return actions;
}

class SilentLog : public ILogInterface
{
public:
    void log(LogLevel, const QString&, const QString&) noexcept override {}
};

// What becomes of an extraction when an entry fails: as the option says, or as the user answers.
class ErrorQuestions
{
public:
    explicit ErrorQuestions(const QString& option)
    {
        const auto action = getActions().find(option);
        if (action != getActions().end())
            mForAll = action->second;
    }

    ActionOnError answer(const QString& text)
    {
        PrintError(makePrintable(text));
        if (CliStop::IsAskedFor())
            return ActionOnError::Stop;
        return mForAll ? *mForAll : ask();
    }

private:
    ActionOnError ask()
    {
        // Not at a terminal that nobody sits at: who sends something else to standard input is a script.
        if (!CliConsole::IsInputTerminal())
            return skipAll();
        QString word;
        const QString question =
            QStringLiteral("[s]kip, skip [a]ll, try a[g]ain, s[t]op, stop and [r]emove? ");
        while (CliConsole::Ask(question, word)) {
            const QChar letter = word.isEmpty() ? QChar() : word.at(0).toLower();
            if (letter == QLatin1Char('a'))
                mForAll = ActionOnError::Skip;
            if (letter == QLatin1Char('s') || letter == QLatin1Char('a'))
                return ActionOnError::Skip;
            if (letter == QLatin1Char('g'))
                return ActionOnError::Retry;
            if (letter == QLatin1Char('t'))
                return ActionOnError::Stop;
            if (letter == QLatin1Char('r'))
                return ActionOnError::StopAndRemove;
        }
        return CliStop::IsAskedFor() ? ActionOnError::Stop : skipAll();
    }

    ActionOnError skipAll()
    {
        PrintWarning(QStringLiteral("Nobody is there to be asked; entries that fail are skipped."));
        mForAll = ActionOnError::Skip;
        return ActionOnError::Skip;
    }

    std::optional<ActionOnError> mForAll;
};

// The bytes that there will be, as far as the archive can be read. What is wrong with it is told by whoever
// extracts it.
qint64 getTotalSize(const QString& archive)
{
    SilentLog log;
    ZipRun run;
    run.log = &log;
    QVector<ZipEntry> entries;
    static_cast<void>(ZipHelper::getEntryList(archive, entries, run));  // those before the damage count
    return std::accumulate(entries.cbegin(), entries.cend(), qint64(0),
                           [](qint64 total, const ZipEntry& entry) { return total + entry.size; });
}

// Extracts everything on a thread, which asks what is to be done about an entry that fails.
bool extractWithQuestions(const QString& archive, const QString& folder, const QString& onError,
                          const ZipLimits& limits)
{
    bool isDone = true;
    ErrorQuestions questions(onError);
    const qint64 total = getTotalSize(archive);
    std::atomic<qint64> done{0};
    ProgressBar bar;
    QEventLoop loop;
    UnzipThread thread(archive, folder, 0);
    thread.setLimits(limits);
    thread.setProgress([&done](qint64 bytes) { done += bytes; });
    thread.setErrorHandler([&](const QString& text) {
        isDone = false;
        bar.leave();
        return questions.answer(text);
    });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (CliStop::IsAskedFor() || (total > 0 && !bar.show(done, total)))
            loop.quit();
    });
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    poll.start(cPollInterval);
    thread.start();
    loop.exec();
    if (total > 0)
        static_cast<void>(bar.show(done, total));  // nothing is left to be stopped
    bar.leave();
    if (!thread.getOpenError().isEmpty()) {
        PrintError(makePrintable(thread.getOpenError()));
        return false;
    }
    if (CliStop::IsAskedFor()) {
        PrintError(QStringLiteral("Stopped. What was extracted whole stays."));
        return false;
    }
    return isDone;
}

// The entries that a word of the call names: one of that name, a folder with all below it, or those that a
// pattern with * and ? fits. The word itself where there is none, which is then missed.
QStringList selectEntries(const QVector<ZipEntry>& entries, const QString& word)
{
    const QString folder = word.endsWith(QLatin1Char('/')) ? word : word + QLatin1Char('/');
    const QRegularExpression pattern(QRegularExpression::wildcardToRegularExpression(word));
    QStringList names;
    for (const ZipEntry& entry : entries) {
        if (entry.name == word || entry.name.startsWith(folder) || pattern.match(entry.name).hasMatch())
            names.append(entry.name);
    }
    return names.isEmpty() ? QStringList(word) : names;
}

bool extractEntries(const CliCall& call, const QString& password, ZipPaths paths, const ZipRun& run)
{
    const QString archive = call.GetArgument(0);
    const QStringList words = call.GetArguments().mid(2);
    if (words.isEmpty())
        return ZipHelper::extractFiles(archive, call.GetArgument(1), paths, password, ZipOnError::GoOn, 0,
                                       run);
    QVector<ZipEntry> entries;
    if (!ZipHelper::getEntryList(archive, entries, run))
        return false;
    QStringList names;
    for (const QString& word : words)
        names += selectEntries(entries, word);
    names.removeDuplicates();
    return ZipHelper::extractFiles(archive, names, call.GetArgument(1), paths, password, 0, run);
}

int extractArchive(const CliCall& call)
{
    const bool isPlain = call.GetArguments().size() == 2 && !call.Has("without-paths");
    const QString onError = call.Get("on-error");
    QString fault = ZipOptions::FindFault(call);
    if (call.Has("on-error") && onError != QLatin1String("ask") && getActions().count(onError) == 0)
        fault = QStringLiteral("\"--on-error\" takes ask, skip, stop or remove, not \"%1\".").arg(onError);
    else if (call.Has("on-error") && !isPlain)
        fault = QStringLiteral("\"--on-error\" is for whole archives, with their paths.");
    if (!fault.isEmpty())
        return RefuseCall(fault);
    const CliStop stop;
    const std::optional<QString> password = ZipOptions::GetPassword(call);
    if (!password)
        return cCliFailed;
    if (call.Has("on-error") && !password->isEmpty())
        return RefuseCall(QStringLiteral("\"--on-error\" is for archives without a password."));
    const ZipLimits limits = call.Has("no-limits") ? ZipLimits::none() : ZipLimits();
    if (call.Has("on-error") || (isPlain && password->isEmpty() && CliConsole::IsInputTerminal()))
        return extractWithQuestions(call.GetArgument(0), call.GetArgument(1), onError, limits) ? cCliDone
                                                                                               : cCliFailed;
    ZipErrorPrinter printer;
    ProgressBar bar;
    ZipRun run;
    run.log = &printer;
    run.limits = limits;
    run.progress = [&bar](qint64 done, qint64 total) { return bar.show(done, total); };
    const ZipPaths paths = call.Has("without-paths") ? ZipPaths::Drop : ZipPaths::Keep;
    return extractEntries(call, *password, paths, run) ? cCliDone : cCliFailed;
}

std::vector<CliOption> getOptions()
{
    std::vector<CliOption> options = ZipOptions::GetPasswordOptions();
    options.push_back({"without-paths", "", "put every file straight into the folder"});
    options.push_back({"no-limits", "", "also extract what looks like an attack"});
    options.push_back(
        {"on-error", "WHAT",
         "when an entry fails: skip it, stop, remove what was extracted, or ask. Without it a terminal "
         "is asked, and entries are skipped where there is none"});
    return options;
}
}  // namespace

const Command cZipExtractCommand = {
    {"zip extract",
     "extract an archive, or some of its entries",
     "Ctrl-C stops it in good order: what was extracted whole stays, and nothing half.\n\n"
     "Refused are entries that overlap, more than a million entries, and more content than the disk has room "
     "for. --no-limits lifts that. A password is tried in Latin-1 and in UTF-8.",
     {{"ARCHIVE", "the zip archive"},
      {"DIR", "the folder for what it holds; made when it is missing"},
      {"ENTRY",
       "an entry, a folder in the archive with all below it, or a pattern with * and ?; all without one",
       CliArgument::Count::cAny}},
     getOptions(),
     {{"hopboxctl zip extract Package.zip out", "Extracts the archive into the folder \"out\"."},
      {"hopboxctl zip extract Package.zip out Package/Links 'Package/*.pdf'",
       "Extracts the folder \"Package/Links\" and the PDFs in \"Package\"."}}},
    extractArchive};
