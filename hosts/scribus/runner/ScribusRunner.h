#pragma once

#include "foundation/core/GResult.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <functional>

class IHostFrontend;

// Where the program is that does the work, and what it gets to see.
struct ScribusSetup
{
    QString scribus = QStringLiteral("/usr/bin/scribus");

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
struct ScribusAnswer : GResult
{
    ScribusAnswer(const GResult& result) : GResult(result) {}

    QJsonObject values;  // what the script answered
};

// Starts Scribus without a window, once for each request.
//
// It runs in an environment that is the same everywhere: a home and a temporary folder of their own, no
// start-up scripts of the user's, no display. It runs one script, host.py, which takes the request as
// one JSON argument and writes its answer to a file that appears whole or not at all: names of documents are
// data at each step, never part of a script or of a command line that a shell reads. Success is the answer,
// never the exit status. What a Scribus that failed said last goes to the log; reasons are sentences for
// people. A Scribus that waits for an answer to a dialog while it opens a document is ended after some
// seconds. It ends with this process.
//
// For the main thread. Calls wait for Scribus; the frontend is asked meanwhile whether to go on.
class ScribusRunner
{
public:
    explicit ScribusRunner(const ScribusSetup& setup);
    ScribusRunner(const ScribusRunner&) = delete;
    ScribusRunner& operator=(const ScribusRunner&) = delete;

    // Who is asked while Scribus runs; null for nobody. Nothing is owned.
    void SetFrontend(IHostFrontend* frontend) { mFrontend = frontend; }
    IHostFrontend* GetFrontend() const { return mFrontend; }

    // From now on, Scribus is ended after so many seconds.
    void SetTimeLimit(int seconds) { mSetup.timeLimitSeconds = seconds; }

    // Whether the user has cancelled, for work between two starts.
    bool IsCancelled() const;

    // A request that stands for several: it may take so many times the limit, and `look` is called now and
    // then while it runs.
    struct Parts
    {
        int count = 1;
        std::function<void()> look;
    };

    // Runs one operation of host.py. The keys of a request depend on the operation and stand in the script.
    ScribusAnswer RunScript(const QString& operation, QJsonObject request);
    ScribusAnswer RunScript(const QString& operation, QJsonObject request, const Parts& parts);

    // Takes an answer that the script has written to a path. False when there is none yet.
    [[nodiscard]] bool ReadAnswer(const QString& path, ScribusAnswer& answer) const;

    // What the answers of Scribus depend on beside the documents: another mark, another program, script or
    // folder of fonts.
    QByteArray GetMark() const;

    // The home that Scribus gets.
    const QString& GetHome() const { return mSetup.home; }

    // The colour profiles that Scribus knows; asked once for each state of the folders where they are. Empty
    // when it can't be asked.
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

    [[nodiscard]] bool Prepare();

    // A Scribus that does nothing is ended while there is no file at `openedPath`; empty: it never is.
    Ended RunScribus(const QStringList& arguments, const QString& openedPath, const Parts& parts);
    GResult CheckRequest(const QByteArray& request);
    GResult MakeFailure(const Ended& ended, int seconds) const;
    QByteArray AskForProfiles();

    ScribusSetup mSetup;
    IHostFrontend* mFrontend = nullptr;
    QTemporaryDir mFolder;
    QString mScriptPath;  // empty until the first start
    int mScratchCount = 0;
    QVector<ColorProfile> mProfiles;
    bool mHasAskedForProfiles = false;
};
