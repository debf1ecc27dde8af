#include "archive/UnzipThread.h"

#include <algorithm>

namespace Morvane
{
UnzipThread::UnzipThread(const QString& zipPath, const QString& destinationFolder, int mode, QObject* parent)
    : QThread(parent), mArchive(zipPath), mDestinationFolder(destinationFolder), mMode(mode)
{
    connect(this, &UnzipThread::NotifyError, this, &UnzipThread::HandleError);
}

UnzipThread::~UnzipThread()
{
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mIsEnding = true;
    }
    mArchive.cancel();
    mAnswered.notify_all();
    wait();
    // What the thread has written last is seen here: it took this lock as it ended.
    const std::lock_guard<std::mutex> lock(mMutex);
}

QStringList UnzipThread::getExtractedFiles() const
{
    const std::lock_guard<std::mutex> lock(mMutex);
    return mExtractedFiles;
}

QString UnzipThread::getOpenError() const
{
    const std::lock_guard<std::mutex> lock(mMutex);
    return mOpenError;
}

void UnzipThread::answer(ActionOnError action)
{
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mAnswer = action;
    }
    mAnswered.notify_all();
}

void UnzipThread::HandleError(const QString& text)
{
    if (mErrorHandler)
        answer(mErrorHandler(text));
}

void UnzipThread::run()
{
    const int count = mArchive.StartIterate();
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mExtractedFiles.clear();
        mOpenError = mArchive.hasFailed() ? mArchive.GetLastError() : QString();
    }
    emit InitProgress(count);
    extractEntries();
    emit DoneProgress();
    const std::lock_guard<std::mutex> lock(mMutex);
}

void UnzipThread::extractEntries()
{
    while (!mArchive.AtEnd()) {
        const QString name = mArchive.GetCurrentFileName();
        emit Progress(mArchive.GetCurrentIndex(), name);
        ActionOnError action = ActionOnError::Skip;
        if (mArchive.ExtractCurrentFile(mDestinationFolder, QString(), mMode)) {
            const std::lock_guard<std::mutex> lock(mMutex);
            mExtractedFiles.append(name);
        } else {
            action = askAboutError();
        }
        // The directory of a damaged archive may end early; then there is nothing to skip to or try again.
        if (action == ActionOnError::Skip && !mArchive.Next() && mArchive.hasFailed())
            action = askAboutError();
        if (action == ActionOnError::StopAndRemove)
            removeExtractedFiles();
        if (action == ActionOnError::Stop || action == ActionOnError::StopAndRemove)
            return;
    }
}

// An end that was asked for counts as the answer to stop.
ActionOnError UnzipThread::askAboutError()
{
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mAnswer.reset();
    }
    emit NotifyError(mArchive.GetLastError());
    std::unique_lock<std::mutex> lock(mMutex);
    mAnswered.wait(lock, [this] { return mAnswer.has_value() || mIsEnding; });
    return mIsEnding ? ActionOnError::Stop : *mAnswer;
}

// The names are visited backwards, so that what lies in a folder goes before the folder. Folders that no
// entry names were made on the way to files; they go last.
void UnzipThread::removeExtractedFiles()
{
    QStringList names = getExtractedFiles();
    names.removeDuplicates();
    std::sort(names.begin(), names.end(),
              [](const QString& one, const QString& other) { return one > other; });
    int remaining = names.size();
    for (const QString& name : names) {
        emit Progress(--remaining, name);
        static_cast<void>(mArchive.removeExtracted(mDestinationFolder, name));  // others may have taken it
    }
    mArchive.removeMadeFolders(mDestinationFolder);
}
}  // namespace Morvane
