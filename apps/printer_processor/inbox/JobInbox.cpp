#include "apps/printer_processor/inbox/JobInbox.h"

#include "apps/printer_processor/inbox/InboxCalls.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"
#include "foundation/trace/GTrace.h"

#include <QDir>

#include <chrono>
#include <set>
#include <thread>

namespace
{
constexpr std::chrono::milliseconds cLockPause(50);
constexpr int cLockAttempts = 60;
constexpr int cMostNumber = 1000000;
constexpr int cLongestName = 240;  // bytes of UTF-8, so that a few characters can be added

void Log(const GString& text)
{
    GTrace::Error(QStringLiteral("JobInbox"), text);
}

// Another name of the kind: with a number before the extension.
GString MakeOtherName(const GString& name, int number)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    GString stem = dot > 0 ? name.left(dot) : name;
    const GString extension = dot > 0 ? name.mid(dot) : GString();
    while (stem.size() > 1 && (stem + extension).toUtf8().size() > cLongestName)
        stem.chop(stem.at(stem.size() - 1).isLowSurrogate() ? 2 : 1);
    return stem + QLatin1Char('-') + QString::number(number) + extension;
}

void Remove(const GPathName& path)
{
    if (!GFileSystemBase::TryToRemoveFile(path) && !GFileSystemBase::TryToRemoveFolder(path))
        throw GCustomException(
            GErrorCode::cFile,
            QStringLiteral("The unfinished copy \"%1\" can't be removed.").arg(path.GetNativePath()));
}

void Flush(const GPathName& folder)
{
    if (!GFileCalls::FlushFolder(folder))
        RaiseFileError(QStringLiteral("The folder \"%1\" can't be flushed"), folder, GetLastSystemError());
}
}  // namespace

JobInbox::JobInbox(const GPathName& folder, std::optional<unsigned> mode,
                   const std::function<bool()>& isStopped)
    : mMode(mode)
{
    QStringList names;
    if (!QDir().mkpath(folder.GetNativePath()) || !InboxCalls::ListNames(folder, &names))
        RaiseFileError(QStringLiteral("The inbox \"%1\" can't be used"), folder, GetLastSystemError());
    mFolder = GPathName(QFileInfo(folder.GetNativePath()).canonicalFilePath());
    const GPathName own = mFolder.GetChild(QStringLiteral(".printer-processor"));
    mCopies = own.GetChild(QStringLiteral("copies"));
    GFileSystemBase::CreateFolder(mCopies);
    InboxCalls::Hide(own);
    mLock = std::make_unique<GLockFile>(own.GetChild(QStringLiteral("lock")));
    TakeLock(isStopped);
    mJournal = std::make_unique<JobJournal>(own.GetChild(QStringLiteral("journal")));
    RemoveLeftovers();
}

void JobInbox::TakeLock(const std::function<bool()>& isStopped)
{
    for (int attempt = 0; attempt < cLockAttempts && !(isStopped && isStopped()); ++attempt) {
        if (mLock->TryLock(GLockType::cWrite) == GLockFile::Result::cLocked)
            return;
        std::this_thread::sleep_for(cLockPause);
    }
    throw GCustomException(
        GErrorCode::cFile,
        QStringLiteral("Another process takes jobs for the inbox \"%1\".").arg(mFolder.GetNativePath()));
}

GPathName JobInbox::GetUnfinished(uint64_t number) const
{
    return mCopies.GetChild(QString::number(number));
}

void JobInbox::RemoveLeftovers() const
{
    std::set<GString> wanted;
    for (const InboxJob& job : mJournal->GetJobs()) {
        if (!job.name.isEmpty())
            wanted.insert(GetUnfinished(job.number).GetLeaf());
    }
    QStringList names;
    if (!InboxCalls::ListNames(mCopies, &names))
        Log(QStringLiteral("The folder \"%1\" can't be read whole; what is left over in it stays.")
                .arg(mCopies.GetNativePath()));
    for (const QString& name : names) {
        if (wanted.count(name) != 0)
            continue;
        try {
            Remove(mCopies.GetChild(name));
        } catch (const GException& error) {
            Log(error.GetDescription());
        }
    }
}

GPathName JobInbox::Deliver(InboxJob* job, const GString& location, const std::atomic<bool>& isStopped)
{
    // A copy that was whole, and is gone from its place, has got its name before the process was killed.
    const bool isNamed =
        !job->name.isEmpty() && InboxCalls::LookAt(GetUnfinished(job->number)) == InboxCalls::Look::Nothing;
    if (job->name.isEmpty())
        MakeCopy(job, location, isStopped);
    const GPathName path = isNamed ? mFolder.GetChild(job->name) : GiveName(job);
    if (!InboxCalls::InheritRights(path))
        Log(QStringLiteral("The rights of \"%1\" can't be set.").arg(path.GetNativePath()));
    return path;
}

void JobInbox::MakeCopy(InboxJob* job, const GString& location, const std::atomic<bool>& isStopped) const
{
    const GPathName copy = GetUnfinished(job->number);
    Remove(copy);
    const JobCopy::Source source = JobCopy::Find(location, mFolder);
    try {
        job->leftOut = JobCopy::Copy(source, copy, isStopped);
        if (!InboxCalls::PrepareRights(copy, mFolder, mMode))
            RaiseFileError(QStringLiteral("The rights of \"%1\" can't be set"), copy, GetLastSystemError());
        Flush(mCopies);
    } catch (const GException&) {
        // Room for the others, while this one waits.
        if (!GFileSystemBase::TryToRemoveFile(copy))
            GFileSystemBase::DropFolder(copy);
        throw;
    }
    job->name = source.name;
    if (!job->leftOut.isEmpty())
        Log(QStringLiteral("\"%1\" is taken without these, which are neither files nor folders: %2")
                .arg(source.name, job->leftOut.join(QStringLiteral(", "))));
}

// From a number on, the first name that nothing bears.
GPathName JobInbox::FindFreeName(const GString& wanted, int* number) const
{
    for (; *number < cMostNumber; ++*number) {
        const GPathName path = mFolder.GetChild(*number == 1 ? wanted : MakeOtherName(wanted, *number));
        if (InboxCalls::LookAt(path) != InboxCalls::Look::Found)
            return path;
    }
    throw GCustomException(GErrorCode::cFile, QStringLiteral("No name is free for \"%1\".").arg(wanted));
}

// The name is in the journal before the copy has it: whoever reads the journal can tell whether it got it.
GPathName JobInbox::GiveName(InboxJob* job)
{
    const GString wanted = job->name;
    for (int number = 1;; ++number) {
        const GPathName path = FindFreeName(wanted, &number);
        mJournal->NoteReady(job->number, path.GetLeaf(), job->leftOut);
        job->name = path.GetLeaf();
        if (InboxCalls::MoveToFreeName(GetUnfinished(job->number), path)) {
            if (!GFileCalls::FlushFolder(mFolder))
                Log(QStringLiteral("The inbox can't be flushed to disk."));
            return path;
        }
        const boost::system::error_code reason = GetLastSystemError();
        if (!InboxCalls::IsNameTaken(reason.value()))
            RaiseFileError(QStringLiteral("The copy \"%1\" can't get its name"), path, reason);
    }
}
