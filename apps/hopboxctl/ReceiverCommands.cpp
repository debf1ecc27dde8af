#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/LogOnStart.h"
#include "apps/hopboxctl/ReceiverStarts.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/system/GProcessInfo.h"
#include "hopbox/HopboxMessages.h"
#include "hopbox/HopboxRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

namespace
{
bool IsPlain(const QString& key)
{
    return std::all_of(key.cbegin(), key.cend(), [](QChar character) {
        return character.unicode() < 128 && character.isLetterOrNumber();
    });
}

QString FindProgram(const QString& text)
{
    const QString program = QStandardPaths::findExecutable(text);
    return program.isEmpty() ? QDir::current().absoluteFilePath(text) : program;
}

// The call of the receiver. Paths are made absolute: a log-on has no current folder.
LogOnStart::Call MakeCall(const CliCall& call, const QString& key, const QString& name)
{
    LogOnStart::Call made{key, QStringLiteral("Receives what is sent to the Hopbox %1").arg(name), {}};
    made.words =
        QStringList{QCoreApplication::applicationDirPath() + QLatin1Char('/') + HopboxMessage::cProcessImage,
                    QStringLiteral("--hopbox"), key, ReceiverStarts::cInboxOption,
                    QDir::cleanPath(QDir::current().absoluteFilePath(call.Get("inbox")))};
    for (const char* option : {"mode", "retry", "attempts"}) {
        if (call.Has(option))
            made.words += {QLatin1String("--") + QLatin1String(option), call.Get(option)};
    }
    if (call.Has("run"))
        made.words += {QStringLiteral("--run"), FindProgram(call.Get("run"))};
    for (const QString& argument : call.GetAll("run-argument"))
        made.words.append(QStringLiteral("--run-argument=") + argument);
    return made;
}

// Asks the receiver itself what it takes. Gives what it says when the call is wrong; empty when it is right.
QString AskReceiver(const QStringList& words)
{
    QProcess receiver;
    receiver.start(words.first(), words.mid(1) << QStringLiteral("--check"));
    if (!receiver.waitForFinished(-1))
        return QStringLiteral("\"%1\" can't be started: %2").arg(words.first(), receiver.errorString());
    if (receiver.exitStatus() == QProcess::NormalExit && receiver.exitCode() == cCliDone)
        return {};
    const QString said = QString::fromUtf8(receiver.readAllStandardError()).section(QLatin1Char('\n'), 0, 0);
    return said.section(QStringLiteral(": "), 1).trimmed();
}

// Why the receiver can't have what its right call names; empty when it can.
QString FindConflict(const LogOnStart::Call& made)
{
    if (!IsPlain(made.key))
        return QStringLiteral("The key \"%1\" is no usual one.").arg(made.key);
    const QString inbox = ReceiverStarts::GetInbox(made.words);
    const QString other = ReceiverStarts::FindByInbox(inbox, made.key);
    return other.isEmpty() ? QString()
                           : QStringLiteral(
                                 "\"%1\" is the inbox of the receiver of \"%2\" already; each "
                                 "receiver needs one of its own.")
                                 .arg(inbox, ReceiverStarts::GetName(HopboxRegistry(), other));
}

int Install(const CliCall& call)
{
    QString key;
    const HopboxRegistry registry;
    const std::optional<HopboxRecord> record = HopboxOutput::FindOrFail(registry, call.GetArgument(0), key);
    DamageNotice::Tell(registry);
    if (!record)
        return cCliFailed;
    if (call.Get("inbox").isEmpty())
        return RefuseCall(QStringLiteral("\"--inbox\" takes a folder, not \"\"."));
    const LogOnStart::Call made = MakeCall(call, key, record->GetName(key));
    QString fault = AskReceiver(made.words);
    if (!fault.isEmpty())
        return RefuseCall(HopboxOutput::GetShown(fault));
    fault = FindConflict(made);
    if (fault.isEmpty())
        fault = LogOnStart::Write(made);
    if (!fault.isEmpty()) {
        PrintError(HopboxOutput::GetShown(fault));
        return cCliFailed;
    }
    fault = call.Has("no-start") ? QString() : LogOnStart::Start(made);
    if (!fault.isEmpty())
        PrintWarning(QStringLiteral("The receiver starts with the next log-on, not now. ") +
                     HopboxOutput::GetShown(fault));
    SetResult(QJsonObject{{QStringLiteral("Key"), key},
                          {QStringLiteral("Place"), LogOnStart::GetPlace(key)},
                          {QStringLiteral("IsStarted"), fault.isEmpty() && !call.Has("no-start")}});
    Print(HopboxOutput::GetShown(LogOnStart::GetPlace(key)) + QLatin1Char('\n'));
    return cCliDone;
}

// Whether a receiver runs that takes the Hopbox's jobs.
bool IsServed(const QString& name)
{
    const auto manager = GPPIPCManager::Get();
    const std::vector<uint32_t> processes = GProcessInfo::GetProcessIDs(HopboxMessage::cProcessImage);
    return std::any_of(processes.cbegin(), processes.cend(), [&](uint32_t process) {
        return manager->GetReceiverState(process, nullptr, name) == GPPIPCState::Reachable;
    });
}

int ShowStatus(const CliCall&)
{
    const HopboxRegistry registry;
    QJsonArray json;
    QVector<QStringList> rows = {
        {QStringLiteral("HOPBOX"), QStringLiteral("RUNNING"), QStringLiteral("STARTED BY")}};
    for (const QString& key : LogOnStart::GetKeys()) {
        const QString name = ReceiverStarts::GetName(registry, key);
        const bool isRunning = registry.GetRecord(key) && IsServed(name);
        rows.append(
            {name, isRunning ? QStringLiteral("yes") : QStringLiteral("no"), LogOnStart::GetPlace(key)});
        json.append(QJsonObject{{QStringLiteral("Key"), key},
                                {QStringLiteral("Name"), name},
                                {QStringLiteral("Place"), LogOnStart::GetPlace(key)},
                                {QStringLiteral("IsRunning"), isRunning}});
    }
    SetResult(json);
    if (rows.size() == 1)
        Print(QStringLiteral(
            "No receiver starts with the log-on. \"hopboxctl receiver install\" makes one.\n"));
    else
        HopboxOutput::PrintTable(rows);
    return DamageNotice::Tell(registry);
}

int Remove(const CliCall& call)
{
    const QString name = call.GetArgument(0);
    // A Hopbox that was deleted is known by its key only.
    QString key = name;
    if (!LogOnStart::GetKeys().contains(key)) {
        const HopboxRegistry registry;
        DamageNotice::Tell(registry);
        if (!HopboxOutput::FindOrFail(registry, name, key))
            return cCliFailed;
    }
    if (!LogOnStart::GetKeys().contains(key)) {
        PrintError(QStringLiteral("No receiver of \"%1\" starts with the log-on.")
                       .arg(HopboxOutput::GetShown(name)));
        return cCliFailed;
    }
    const QString stopFault = LogOnStart::Stop(key);
    const QString fault = LogOnStart::Remove(key);
    if (!stopFault.isEmpty())
        PrintWarning(HopboxOutput::GetShown(stopFault));
    if (!fault.isEmpty())
        PrintError(HopboxOutput::GetShown(fault));
    SetResult(QJsonObject{{QStringLiteral("Key"), key}});
    return fault.isEmpty() ? cCliDone : cCliFailed;
}
}  // namespace

const Command cReceiverInstallCommand = {
    {"receiver install",
     "have the receiver of a Hopbox start with every log-on",
     "It takes the jobs of that Hopbox only, and is started now, too. On Linux a systemd user unit starts "
     "it, on "
     "Windows the registry key \"Run\". What is printed is the place of that. With MORVANE_ROOT set, the "
     "unit "
     "sets it as well; on Windows set it for the log-on yourself.",
     {{"NAME", "the Hopbox"}},
     {{"inbox", "DIR", "the folder for what arrives", CliOption::Use::cRequired},
      {"mode", "MODE", "as for PrinterProcessorWin.exe"},
      {"run", "COMMAND", "as for PrinterProcessorWin.exe"},
      {"run-argument", "TEXT", "as for PrinterProcessorWin.exe", CliOption::Use::cRepeated},
      {"retry", "SECONDS", "as for PrinterProcessorWin.exe"},
      {"attempts", "N", "as for PrinterProcessorWin.exe"},
      {"no-start", "", "start it with the next log-on only"}},
     {{"hopboxctl receiver install Press --inbox Inbox",
       "What is sent to the Hopbox \"Press\" arrives in \"Inbox\" from now on."}}},
    Install};

const Command cReceiverStatusCommand = {
    {"receiver status",
     "list the receivers that start with the log-on",
     "RUNNING says whether a running receiver takes the Hopbox's jobs, this one or another.",
     {},
     {},
     {{"hopboxctl receiver status", "Lists them, and whether they run."}}},
    ShowStatus};

const Command cReceiverRemoveCommand = {
    {"receiver remove",
     "stop a receiver, and no longer start it with the log-on",
     "What it has accepted stays in the inbox. On Windows a receiver that runs goes on until you log off.",
     {{"NAME", "the Hopbox, or its key when it was deleted"}},
     {},
     {{"hopboxctl receiver remove Press", "The receiver of \"Press\" starts no more."}}},
    Remove};
