#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

class IHostFrontend;

// Where the programs are that do the work, and how long they may take.
struct ScribusSetup
{
    QString scribus = QStringLiteral("/usr/bin/scribus");
    QString qpdf = QStringLiteral("/usr/bin/qpdf");

    // Folders with fonts beside those of the system, as in a user's home; Scribus, which gets a home of its
    // own, would not see them otherwise.
    QStringList fontFolders;

    int timeLimitSeconds = 300;  // for one start of a program
};

// How a program's work ended.
struct ScribusAnswer
{
    enum class Outcome
    {
        Succeeded,
        Failed,
        Cancelled  // by the user
    };

    Outcome outcome = Outcome::Failed;
    QString reason;      // of a failure, for the log
    QJsonObject values;  // what the script answered

    bool HasSucceeded() const { return outcome == Outcome::Succeeded; }
};

// Starts Scribus without a window, once for each request, and qpdf.
//
// Both run in an environment that is the same everywhere: a home and a temporary folder of their own, which
// go with this object, no start-up scripts of the user's, no display. Scribus runs one script, host.py, which
// takes the request as one JSON argument and writes its answer to a file that appears whole or not at all:
// names of documents are data at each step, never part of a script or of a command line that a shell reads.
// Success is the answer, never the exit status. What a failed program said last goes to the log.
//
// For the main thread. Calls wait for the program; the frontend is asked meanwhile whether to go on.
class ScribusRunner
{
public:
    explicit ScribusRunner(const ScribusSetup& setup);
    ScribusRunner(const ScribusRunner&) = delete;
    ScribusRunner& operator=(const ScribusRunner&) = delete;

    // Who is asked while a program runs; null for nobody. Nothing is owned.
    void SetFrontend(IHostFrontend* frontend) { mFrontend = frontend; }

    // Runs one operation of host.py. The keys of a request depend on the operation and stand in the script.
    ScribusAnswer RunScript(const QString& operation, QJsonObject request);

    // Runs qpdf with the arguments. Its warnings (exit status 3) count as success, as they are no fault of
    // the file's structure.
    ScribusAnswer RunQpdf(const QStringList& arguments);

    // The folder of this object's own, for files that are needed for the time of a command.
    QString GetScratchPath(const QString& name) const;

private:
    struct Ended
    {
        bool hasStarted = false;
        bool isCancelled = false;
        bool isLate = false;
        bool hasCrashed = false;
        int status = -1;
        QByteArray output;  // the end of it, standard output and error together
    };

    bool Prepare(QString& reason);
    bool WriteFontSettings() const;
    Ended RunProgram(const QString& program, const QStringList& arguments);
    ScribusAnswer MakeFailure(const QString& program, const Ended& ended, const QString& reason) const;

    ScribusSetup mSetup;
    IHostFrontend* mFrontend = nullptr;
    QTemporaryDir mFolder;
    bool mIsPrepared = false;
    int mRequestCount = 0;
};
