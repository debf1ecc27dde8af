#pragma once

#include "hosts/scribus/runner/CommandResult.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

class IHostFrontend;

// Where the programs are that do the work, and what they get to see.
struct ScribusSetup
{
    QString scribus = QStringLiteral("/usr/bin/scribus");
    QString qpdf = QStringLiteral("/usr/bin/qpdf");

    // The home that Scribus gets. It keeps what it found out about the system's fonts there, which makes the
    // next start quicker; several may use one. Empty: one that goes with the runner.
    QString home;

    // Folders with fonts beside those of the system. Scribus would not see those of a user's home otherwise.
    QStringList fontFolders;

    int timeLimitSeconds = 300;  // for one start of a program

    // The home in the user's cache folder (below MORVANE_ROOT where that is set) and the user's fonts.
    static ScribusSetup MakeForUser();
};

// A colour profile that Scribus knows.
struct ColorProfile
{
    QString name;  // by which documents name it
    QString path;
    bool isCmykOutput = false;  // the profile of a press
    bool isRgb = false;
};

// How a program's work ended.
struct ScribusAnswer : CommandResult
{
    QJsonObject values;  // what the script answered
    QByteArray output;   // the end of what qpdf printed
};

// Starts Scribus without a window, once for each request, and qpdf.
//
// Both run in an environment that is the same everywhere: a home and a temporary folder of their own, no
// start-up scripts of the user's, no display. Scribus runs one script, host.py, which takes the request as
// one JSON argument and writes its answer to a file that appears whole or not at all: names of documents are
// data at each step, never part of a script or of a command line that a shell reads. Success is the answer,
// never the exit status. What a failed program said last goes to the log; reasons are sentences for people. A
// Scribus that waits for an answer to a dialog while it opens a document is ended after some seconds. A
// program ends with this process.
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
    IHostFrontend* GetFrontend() const { return mFrontend; }

    // From now on, a program is ended after so many seconds.
    void SetTimeLimit(int seconds) { mSetup.timeLimitSeconds = seconds; }

    // Whether the user has cancelled, for work between two programs.
    bool IsCancelled() const;

    // Runs one operation of host.py. The keys of a request depend on the operation and stand in the script.
    ScribusAnswer RunScript(const QString& operation, QJsonObject request);

    // Runs qpdf with the arguments. Its warnings (exit status 3) are a failure: our own files give cause for
    // none.
    ScribusAnswer RunQpdf(const QStringList& arguments);

    // The colour profiles that Scribus knows; asked once. Empty when it can't be asked.
    const QVector<ColorProfile>& GetProfiles();

    // A path, never given before, in the folder of this object's own, for a file of that ending that is
    // needed for the time of a command. Empty when there is no such folder.
    QString MakeScratchPath(const QString& ending);

private:
    struct Ended
    {
        bool hasStarted = false;
        bool isCancelled = false;
        bool isLate = false;
        bool isWaiting = false;  // for somebody to answer a dialog
        bool hasCrashed = false;
        int status = -1;
        QByteArray output;  // the end of it, standard output and error together
    };

    bool Prepare();

    // A program that does nothing is ended, until there is a file at `openedPath`; empty: it never is.
    Ended RunProgram(const QString& program, const QStringList& arguments,
                     const QString& openedPath = QString());
    ScribusAnswer MakeFailure(const QString& program, const Ended& ended) const;

    ScribusSetup mSetup;
    IHostFrontend* mFrontend = nullptr;
    QTemporaryDir mFolder;
    QString mScriptPath;  // empty until the first start
    int mScratchCount = 0;
    QVector<ColorProfile> mProfiles;
    bool mHasAskedForProfiles = false;
};
