#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/cli/CliStop.h"
#include "foundation/ipc/GPPIPCManager.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>

#include <chrono>
#include <thread>

namespace
{
constexpr std::chrono::milliseconds cLook(200);

using Receivers = std::vector<GPPIPCReceiverInfo>;

QString GetState(const GPPIPCReceiverInfo& receiver)
{
    if (receiver.isAlive)
        return receiver.capacity > 0 ? QStringLiteral("running") : QStringLiteral("unreachable");
    return receiver.isKept ? QStringLiteral("ended, jobs wait") : QStringLiteral("ended");
}

QVector<QStringList> MakeRows(const Receivers& receivers)
{
    QVector<QStringList> rows = {{QStringLiteral("PROCESS"), QStringLiteral("STATE"), QStringLiteral("QUEUE"),
                                  QStringLiteral("TAKES")}};
    for (const GPPIPCReceiverInfo& receiver : receivers) {
        const QString percent =
            QString::number(receiver.capacity > 0 ? receiver.fill * 100 / receiver.capacity : 0);
        const GString names = receiver.addresses.GetText();
        rows.append({QString::number(receiver.process), GetState(receiver), percent + QLatin1String(" %"),
                     names.isEmpty() ? QStringLiteral("all") : QString(names)});
    }
    return rows;
}

void SetReceivers(const Receivers& receivers)
{
    QJsonArray json;
    for (const GPPIPCReceiverInfo& receiver : receivers) {
        QJsonArray names;
        for (const GString& name : receiver.addresses.GetNames())
            names.append(name);
        json.append(QJsonObject{{QStringLiteral("process"), static_cast<qint64>(receiver.process)},
                                {QStringLiteral("receiver"), static_cast<qint64>(receiver.receiver)},
                                {QStringLiteral("state"), GetState(receiver)},
                                {QStringLiteral("bytes"), static_cast<qint64>(receiver.fill)},
                                {QStringLiteral("capacity"), static_cast<qint64>(receiver.capacity)},
                                {QStringLiteral("takes"), names}});
    }
    SetResult(json);
}

void PrintReceivers(const QVector<QStringList>& rows)
{
    if (rows.size() == 1)
        Print(QStringLiteral("No receiver is there.\n"));
    else
        HopboxOutput::PrintTable(rows);
}

int List(const CliCall&)
{
    const Receivers receivers = GPPIPCManager::Get()->Look();
    SetReceivers(receivers);
    PrintReceivers(MakeRows(receivers));
    return cCliDone;
}

int Watch(const CliCall& call)
{
    bool isNumber = true;
    const double seconds = call.Has("seconds") ? call.Get("seconds").toDouble(&isNumber) : 0;
    if (!isNumber || (call.Has("seconds") && !(seconds > 0)))
        return RefuseCall(
            QStringLiteral("\"--seconds\" takes a number above 0, not \"%1\".").arg(call.Get("seconds")));
    const CliStop stop;
    QElapsedTimer clock;
    clock.start();
    QVector<QStringList> shown;
    Receivers receivers;
    do {
        receivers = GPPIPCManager::Get()->Look();
        const QVector<QStringList> rows = MakeRows(receivers);
        if (rows != shown) {
            PrintReceivers(rows);
            if (!FlushOutput())
                return cCliFailed;
        }
        shown = rows;
        std::this_thread::sleep_for(cLook);
    } while (!CliStop::IsAskedFor() && (seconds <= 0 || clock.elapsed() < seconds * 1000));
    SetReceivers(receivers);
    return cCliDone;
}

int Clean(const CliCall& call)
{
    const size_t count = GPPIPCManager::Get()->Clean(call.Has("with-jobs"));
    SetResult(QJsonObject{{QStringLiteral("removed"), static_cast<qint64>(count)}});
    Print(count == 0 ? QStringLiteral("Nothing was left.\n") : QStringLiteral("%1 removed.\n").arg(count));
    return cCliDone;
}
}  // namespace

const Command cChannelListCommand = {{"channel list",
                                      "list the receivers, and what is left of ended ones",
                                      "QUEUE says how full a receiver's queue is, TAKES which Hopboxes' jobs "
                                      "it takes. \"ended, jobs wait\": the "
                                      "next receiver with the same inbox takes them.",
                                      {},
                                      {},
                                      {{"hopboxctl channel list", "Lists the receivers."}}},
                                     List};

const Command cChannelWatchCommand = {
    {"channel watch",
     "list the receivers again whenever something changes",
     "It goes on until Ctrl-C.",
     {},
     {{"seconds", "N", "end after this time"}},
     {{"hopboxctl channel watch --seconds 1", "Watches the receivers for a second."}}},
    Watch};

const Command cChannelCleanCommand = {
    {"channel clean",
     "remove what ended receivers left",
     "Running receivers stay, and so do jobs that wait for the next start of their receiver.",
     {},
     {{"with-jobs", "", "remove jobs that wait, too; they are lost"}},
     {{"hopboxctl channel clean", "Removes what nobody needs any more."}}},
    Clean};
