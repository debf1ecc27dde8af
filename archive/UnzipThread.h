#pragma once

#include "archive/ZipArchive.h"

#include <QStringList>
#include <QThread>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

namespace Morvane
{
// What becomes of an extraction after an entry has failed. Any other number tries the same entry again.
enum class ActionOnError
{
    Retry = 1,
    Skip = 2,          // go on with the next entry
    Stop = 3,          // end, and keep what was extracted
    StopAndRemove = 4  // end, and remove everything that was extracted
};

// Extracts a whole archive on a thread of its own.
//
// The signals are emitted on that thread; an object of the interface thread that is connected to them
// receives them on its own thread. When an entry fails, the thread emits NotifyError and waits for an answer
// without a time limit. The answer comes from the function set by setErrorHandler(), or from a slot of
// NotifyError that calls answer().
class UnzipThread : public QThread
{
    Q_OBJECT

public:
    // Called with the text of the error, on the thread that this object belongs to.
    using ErrorHandler = std::function<ActionOnError(const QString& text)>;

    // Extracts the archive into the folder, once start() is called. `mode` is added to the rights of every
    // file and folder, see ZipArchive::ExtractCurrentFile().
    UnzipThread(const QString& zipPath, const QString& destinationFolder, int mode,
                QObject* parent = nullptr);

    // Ends the extraction, whatever it is doing or waiting for, and waits until the thread has ended. Entries
    // that were extracted whole stay.
    ~UnzipThread() override;

    // Call the next three before start().
    void setErrorHandler(const ErrorHandler& handler) { mErrorHandler = handler; }
    void setLimits(const ZipLimits& limits) { mArchive.setLimits(limits); }
    void setProgress(std::function<void(qint64 bytes)> progress)
    {
        mArchive.setProgress(std::move(progress));
    }

    // The names of the entries extracted so far, in the order of the archive. From any thread. After
    // ActionOnError::StopAndRemove it still tells what had been extracted.
    QStringList getExtractedFiles() const;

    // Why the archive could not be opened; empty when it could, and before InitProgress.
    QString getOpenError() const;

    // Answers the last NotifyError. Can be called from any thread, and also from a slot that is connected
    // directly. An answer that comes before its question is ignored.
    void answer(ActionOnError action);

public slots:
    // Asks the error handler, where there is one, and passes its answer on. Connected to NotifyError.
    void HandleError(const QString& text);

signals:
    // The number of entries; 0 when the archive has none or can't be opened.
    void InitProgress(int count);

    // Before an entry is extracted: its number, from 0, and its name. While extracted entries are removed:
    // how many are left, and the name of the one that is removed.
    void Progress(int index, const QString& name);

    void DoneProgress();

    // An entry failed; the thread waits for the answer.
    void NotifyError(const QString& text);

protected:
    void run() override;

private:
    void extractEntries();
    ActionOnError askAboutError();
    void removeExtractedFiles();

    ZipArchive mArchive;
    const QString mDestinationFolder;
    const int mMode;
    ErrorHandler mErrorHandler;

    mutable std::mutex mMutex;  // guards what follows
    std::condition_variable mAnswered;
    QStringList mExtractedFiles;
    QString mOpenError;
    std::optional<ActionOnError> mAnswer;
    bool mIsEnding = false;
};
}  // namespace Morvane
