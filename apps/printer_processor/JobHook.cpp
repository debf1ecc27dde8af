#include "apps/printer_processor/JobHook.h"

#include "foundation/system/GBoundProcess.h"

#include <QJsonDocument>
#include <QTemporaryFile>

#include <algorithm>
#include <cstdio>

namespace
{
constexpr std::chrono::milliseconds cFirstPause(1000);
constexpr std::chrono::milliseconds cLongestPause(60000);
constexpr int cLook = 50;            // milliseconds
constexpr int cEndTime = 300;        // that a command has to end when it is asked to
constexpr int cLongestReason = 500;  // characters of what a command printed
constexpr int cMostDoublings = 10;

// Passes on what the command prints, and keeps its end.
void PassOn(QProcess& process, QByteArray* end)
{
    const QByteArray output = process.readAll();
    std::fwrite(output.constData(), 1, static_cast<size_t>(output.size()), stderr);
    std::fflush(stderr);
    *end = (*end + output).right(4 * cLongestReason);
}

QString GetLastLine(const QByteArray& output)
{
    return QString::fromUtf8(output).trimmed().section(QLatin1Char('\n'), -1).trimmed().right(cLongestReason);
}
}  // namespace

JobHook::JobHook(JobCommand command, JobInbox* inbox, std::function<void(const QJsonObject&)> print)
    : mCommand(std::move(command)), mInbox(inbox), mPrint(std::move(print)), mThread([this] { Run(); })
{
}

JobHook::~JobHook()
{
    static_cast<void>(Stop(std::chrono::milliseconds(0)));  // waited for below
    mThread.join();
}

void JobHook::Add(const InboxJob& job, const QJsonObject& line)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    Item item;
    item.number = job.number;
    item.line = line;
    mItems.push_back(item);
    mChanged.notify_all();
}

bool JobHook::IsBusy() const
{
    const std::lock_guard<std::mutex> guard(mMutex);
    return !mItems.empty() && mItems.front().failures == 0;
}

bool JobHook::IsWaiting() const
{
    const std::lock_guard<std::mutex> guard(mMutex);
    return !mItems.empty() || mHasGivenUp;
}

bool JobHook::Stop(std::chrono::milliseconds timeout)
{
    mIsStopped = true;
    std::unique_lock<std::mutex> lock(mMutex);
    mChanged.notify_all();
    return mChanged.wait_for(lock, timeout, [this] { return mHasEnded; });
}

void JobHook::Run()
{
    Item item;
    while (WaitForFirst(&item)) {
        const QString reason = RunCommand(item.line);
        if (reason.isEmpty())
            Succeed(item);
        else if (!mIsStopped)
            Fail(item, reason);
    }
    const std::lock_guard<std::mutex> guard(mMutex);
    mHasEnded = true;
    mChanged.notify_all();
}

// The first item, when its time has come. False when it is to stop.
bool JobHook::WaitForFirst(Item* item)
{
    std::unique_lock<std::mutex> lock(mMutex);
    while (!mIsStopped) {
        if (mItems.empty()) {
            mChanged.wait(lock);
        } else if (mItems.front().due > Clock::now()) {
            mChanged.wait_until(lock, Clock::time_point(mItems.front().due));
        } else {
            *item = mItems.front();
            return true;
        }
    }
    return false;
}

// Why the command failed; empty when it did not. What it reads is in a file: through a pipe it would get a
// part of it, or nothing, when this process is killed, and could not tell that from the whole.
QString JobHook::RunCommand(const QJsonObject& line) const
{
    QTemporaryFile input(mInbox->GetScratchFolder().GetNativePath() + QStringLiteral("/call-XXXXXX"));
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    if (!input.open() || input.write(text) != text.size() || !input.flush())
        return QStringLiteral("What the command is to read can't be written: %1").arg(input.errorString());
    GBoundProcess process(GBoundProcess::Ending::cByRequest);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(input.fileName());
    if (!process.Start(mCommand.program,
                       mCommand.arguments + QStringList(line.value(QLatin1String("saved")).toString())))
        return QStringLiteral("The command can't be started: %1").arg(process.errorString());
    QByteArray end;
    while (!process.waitForFinished(cLook) && process.state() != QProcess::NotRunning) {
        PassOn(process, &end);
        if (!mIsStopped)
            continue;
        process.terminate();
        if (!process.waitForFinished(cEndTime))
            process.kill();
    }
    PassOn(process, &end);
    const bool hasEnded = process.exitStatus() == QProcess::NormalExit;
    if (hasEnded && process.exitCode() == 0)
        return {};
    const QString what = hasEnded
                             ? QStringLiteral("The command ended with status %1.").arg(process.exitCode())
                             : QStringLiteral("The command was ended by force.");
    return end.trimmed().isEmpty() ? what : what + QLatin1Char(' ') + GetLastLine(end);
}

// In this order: nothing is told of a success that is not in the journal.
void JobHook::Succeed(const Item& item)
{
    mInbox->GetJournal().NoteDone(item.number);
    QJsonObject line = item.line;
    line.insert(QStringLiteral("ran"), true);
    mPrint(line);
    DropFirst();
}

void JobHook::Fail(Item item, const QString& reason)
{
    ++item.failures;
    const bool isGivenUp = item.failures == mCommand.attempts;
    if (isGivenUp || item.told != reason) {
        QJsonObject line = item.line;
        line.insert(QStringLiteral("error"), reason);
        if (!isGivenUp)
            line.insert(QStringLiteral("waiting"), true);
        mPrint(line);
        item.told = reason;
    }
    if (isGivenUp) {
        mHasGivenUp = true;
        DropFirst();
        return;
    }
    const auto longer = cFirstPause * (1 << std::min(item.failures - 1, cMostDoublings));
    item.due = Clock::now() + (mCommand.retry.count() > 0 ? mCommand.retry : std::min(longer, cLongestPause));
    const std::lock_guard<std::mutex> guard(mMutex);
    mItems.front() = item;
}

void JobHook::DropFirst()
{
    const std::lock_guard<std::mutex> guard(mMutex);
    mItems.pop_front();
}
