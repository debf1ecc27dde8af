#include "apps/printer_processor/inbox/JobJournal.h"

#include "apps/printer_processor/inbox/InboxCalls.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GDamagedCopies.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"
#include "foundation/trace/GTrace.h"

#include <QRandomGenerator>

#include <algorithm>

namespace
{
// From this size on, a journal is written anew when what is over has come to half of it.
constexpr qint64 cLargeSize = 1 << 20;

[[noreturn]] void Raise(const GPathName& path, const GString& reason)
{
    throw GCustomException(
        GErrorCode::cFile,
        QStringLiteral("The journal \"%1\" can't be used: %2").arg(path.GetNativePath(), reason));
}

GBuffer ReadAll(const GPathName& path)
{
    QFile file(path.GetNativePath());
    GString reason;
    const FileOpening opening = OpenSharedForReading(file, cLargestTextFile, reason);
    if (opening == FileOpening::cMissing)
        return {};
    if (opening == FileOpening::cRefused)
        Raise(path, reason);
    GBuffer text;
    const GResult read = ReadToEnd(file, &text);
    if (!read.HasSucceeded())
        Raise(path, read.GetReason());
    return text;
}

uint64_t MakeKeeper()
{
    uint64_t keeper = 0;
    while (keeper == 0)
        keeper = QRandomGenerator::system()->generate64();
    return keeper;
}
}  // namespace

JobJournal::JobJournal(const GPathName& file)
    : mPath(file), mContent(JobJournalContent::Read(ReadAll(file))), mFile(file.GetNativePath())
{
    if (mContent.isDamaged) {
        const GPathName copy = GDamagedCopies::Keep(file);
        GTrace::Error(QStringLiteral("JobJournal::JobJournal"),
                      QStringLiteral("The journal of the inbox is damaged; it is kept as \"%1\".")
                          .arg(copy.GetNativePath()));
    }
    if (mContent.keeper == 0)
        mContent.keeper = MakeKeeper();
    Rewrite();
}

std::vector<InboxJob> JobJournal::GetJobs() const
{
    const std::lock_guard<std::mutex> guard(mMutex);
    std::vector<InboxJob> jobs;
    for (const auto& job : mContent.jobs)
        jobs.push_back(job.second);
    return jobs;
}

std::vector<InboxJob> JobJournal::Add(const std::vector<InboxJob>& jobs)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    std::vector<InboxJob> added;
    GBuffer lines;
    for (InboxJob job : jobs) {
        if (mContent.Knows(job.queue, job.position))
            continue;
        job.number = mContent.lastNumber + added.size() + 1;
        lines += JobJournalLine::Job(job);
        added.push_back(job);
    }
    if (!added.empty())
        Append(lines);
    for (const InboxJob& job : added)
        mContent.Add(job);
    return added;
}

void JobJournal::NoteReady(uint64_t number, const GString& name, const QStringList& leftOut)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    Append(JobJournalLine::Ready(number, name, leftOut));
    InboxJob& job = mContent.jobs[number];
    job.name = name;
    job.leftOut = leftOut;
}

void JobJournal::NoteDone(uint64_t number)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    try {
        Append(JobJournalLine::Done(number));  // may write the jobs anew, of which this is one until then
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("JobJournal::NoteDone"), error.GetDescription());
    }
    mContent.jobs.erase(number);
}

// What a failed write has left of its lines is not to stand before the next ones: the file is written anew.
void JobJournal::Append(const GBuffer& lines)
{
    if (!mIsSound || mFile.size() > std::max(cLargeSize, 2 * mWholeSize))
        Rewrite();
    mIsSound = false;
    if (!GFileCalls::WriteAll(mFile, lines.constData(), lines.size()))
        Raise(mPath, mFile.errorString());
    if (!GFileCalls::FlushFile(mFile))
        Raise(mPath, GetReasonText(GetLastSystemError()));
    mIsSound = true;
}

void JobJournal::Rewrite()
{
    mFile.close();
    mIsSound = false;
    const GBuffer text = mContent.Write();
    GDurableFile file(mPath);
    file.Write(text.constData(), text.size());
    file.Commit();
    if (!mFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        Raise(mPath, mFile.errorString());
    mWholeSize = text.size();
    mIsSound = true;
}
