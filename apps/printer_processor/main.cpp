#include "apps/printer_processor/MessagePrinter.h"
#include "apps/printer_processor/Options.h"
#include "apps/printer_processor/StopRequest.h"
#include "foundation/core/GMessageLoop.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <exception>

// The receiving process of a Hopbox as people can run it: takes the messages of the Printer Processor channel
// and shows them. It has the image name by which senders find such processes.

namespace
{
constexpr int cExitDone = 0;
constexpr int cExitFailed = 1;

constexpr int cTickInterval = 50;  // milliseconds

void PrintError(const QString& text)
{
    std::fprintf(stderr, "PrinterProcessorWin.exe: %s\n", text.toUtf8().constData());
    std::fflush(stderr);
}

std::optional<JobInbox> OpenInbox(const Options& options)
{
    return options.inbox.IsEmpty() ? std::optional<JobInbox>() : JobInbox(options.inbox);
}

// Ends the event loop when somebody wants this process to end, or when the time is up.
class Ending
{
public:
    explicit Ending(const Options& options)
    {
        QObject::connect(&mPoll, &QTimer::timeout, [] {
            if (StopRequest::IsMade())
                QCoreApplication::exit(cExitDone);
        });
        mPoll.start(cTickInterval);
        if (options.milliseconds > 0) {
            const int status = options.count > 0 ? cExitFailed : cExitDone;
            QTimer::singleShot(options.milliseconds, [status] { QCoreApplication::exit(status); });
        }
    }

private:
    QTimer mPoll;
};

// The message loop, for as long as this lives.
class LoopRun
{
public:
    LoopRun() { GMessageLoop::Start(cTickInterval); }
    ~LoopRun() { GMessageLoop::Stop(); }
    LoopRun(const LoopRun&) = delete;
    LoopRun& operator=(const LoopRun&) = delete;
};

// Takes messages up until it is to end. The receiver deregisters however that comes.
int Receive(const Options& options)
{
    const StopRequest stopRequest;
    const MessagePrinter printer(OpenInbox(options));
    const Ending ending(options);
    const LoopRun loop;
    int count = 0;
    const GPPIPCReceiver receiver([&](const GPPIPCMessage& message) {
        if (!printer.Take(message))
            QCoreApplication::exit(cExitFailed);
        else if (++count == options.count)
            QCoreApplication::exit(cExitDone);
    });
    PrintError(QStringLiteral("ready as process %1").arg(GProcessInfo::GetOwnProcessID()));
    return QCoreApplication::exec();
}
}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    Options options;
    if (const std::optional<int> status = Options::Read(argc, argv, options))
        return *status;
    try {
        return Receive(options);
    } catch (const std::exception& error) {
        PrintError(QString::fromUtf8(error.what()));
        return cExitFailed;
    }
}
