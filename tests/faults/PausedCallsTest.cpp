#include "Scenarios.h"
#include "apps/printer_processor/inbox/JobCopy.h"
#include "archive/ZipReader.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GOwnedFile.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Test.h"
#include "tests/support/faults/FaultCalls.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <sys/stat.h>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

// What another process does between two calls of a task.
namespace
{
// A child in which the first call of that name on the file waits, before it is made, until GoOn.
class PausedChild
{
public:
    PausedChild(const Sandbox& sandbox, const char* role, const char* call)
        : mReport(sandbox.GetPath("../%1-report"_q.arg(QFileInfo(sandbox.GetPath()).fileName())))
    {
        qputenv("LD_PRELOAD", qPrintable(QCoreApplication::applicationDirPath() + "/preloaded_faults.so"_q));
        qputenv(cFaultRoot, qPrintable(sandbox.GetPath("a"_q)));
        qputenv(cFaultReport, qPrintable(mReport));
        qputenv(cFaultPause, call);
        mChild =
            std::make_unique<ChildProcess>(QString::fromLatin1(role), QStringList(sandbox.GetPath("a"_q)));
        for (const char* name : {"LD_PRELOAD", cFaultRoot, cFaultReport, cFaultPause})
            qunsetenv(name);
        while (!QFile::exists(mReport) && mChild->IsRunning())
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ~PausedChild() { QFile::remove(mReport); }
    PausedChild(const PausedChild&) = delete;
    PausedChild& operator=(const PausedChild&) = delete;

    int GoOn()
    {
        EXPECT_TRUE(QFile::remove(mReport));
        return mChild->WaitForExit();
    }

private:
    const QString mReport;
    std::unique_ptr<ChildProcess> mChild;
};

GOwnedFile OwnFile(const QString& path)
{
    return GOwnedFile([&path] { return GPathName(path); });
}
}  // namespace

CHILD_ROLE(OwnAFile)
{
    const GOwnedFile file = OwnFile(arguments.at(0));
    return QFile::exists(arguments.at(0)) ? 0 : 1;
}

CHILD_ROLE(RemoveALeftover)
{
    GOwnedFile::RemoveUnowned(GPathName(arguments.at(0)));
    return 0;
}

CHILD_ROLE(OpenAFile)
{
    QFile file(arguments.at(0));
    GString reason;
    return OpenSharedForReading(file, cLargestTextFile, reason) == FileOpening::cRefused ? 0 : 1;
}

CHILD_ROLE(OpenAnArchive)
{
    return Morvane::ZipReader(arguments.at(0)).open() ? 1 : 0;
}

CHILD_ROLE(CopyAJob)
{
    const JobCopy::Source job = JobCopy::Find(arguments.at(0), GPathName(arguments.at(0) + "-inbox"_q));
    const std::atomic<bool> isStopped{false};
    const int32_t code =
        GetErrorCode([&] { JobCopy::Copy(job, GPathName(arguments.at(0) + "-copy"_q), isStopped); });
    return code == GErrorCode::cFile ? 0 : 1;
}

TEST(PausedCalls, FileThatWasTakenForALeftoverBeforeItWasLockedIsMadeAnew)
{
    const Sandbox sandbox;
    PausedChild maker(sandbox, "OwnAFile", "lock");
    GOwnedFile::RemoveUnowned(GPathName(sandbox.GetPath("a"_q)));
    EXPECT_FALSE(QFile::exists(sandbox.GetPath("a"_q)));
    EXPECT_EQ(maker.GoOn(), 0);
}

TEST(PausedCalls, LeftoverThatGaveWayToAnOwnedFileMeanwhileTakesNothingAlong)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a"_q);
    WriteFile(path, "left");
    PausedChild cleaner(sandbox, "RemoveALeftover", "lock");
    EXPECT_TRUE(QFile::remove(path));
    const GOwnedFile own = OwnFile(path);
    EXPECT_EQ(cleaner.GoOn(), 0);
    EXPECT_TRUE(QFile::exists(path));
}

TEST(PausedCalls, PipeThatTakesTheNameBetweenTheLookAndTheOpeningHoldsNobodyUp)
{
    for (const char* role : {"OpenAFile", "OpenAnArchive"}) {
        const Sandbox sandbox;
        const QString path = sandbox.GetPath("a"_q);
        WriteFile(path, "a file");
        PausedChild reader(sandbox, role, "open");
        EXPECT_TRUE(QFile::remove(path));
        EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        EXPECT_EQ(reader.GoOn(), 0) << role;
    }
}

TEST(PausedCalls, FileThatIsWrittenToMeanwhileIsNoCopy)
{
    for (const char* content : {"longer than it was", "short", "as long."}) {
        const Sandbox sandbox;
        WriteFile(sandbox.GetPath("a"_q), "8 bytes.");
        PausedChild copier(sandbox, "CopyAJob", "read");
        WriteFile(sandbox.GetPath("a"_q), content);
        EXPECT_EQ(copier.GoOn(), 0) << content;
    }
}

// Both files are out of reach in the middle of a change of both.
TEST(PausedCalls, ChangeThatCanNeitherGoOnNorBackIsTold)
{
    const Sandbox sandbox;
    const QString root = sandbox.GetPath();
    const QString report = sandbox.GetPath("../%1-report"_q.arg(QFileInfo(root).fileName()));
    QDir().mkpath(root);
    const FaultScenario scenario = GetHopboxChange();
    scenario.prepare(root);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD"_q, QCoreApplication::applicationDirPath() + "/preloaded_faults.so"_q);
    environment.insert(QLatin1String(cFaultRoot), root);
    environment.insert(QLatin1String(cFaultReport), report);
    environment.insert(QLatin1String(cFaultPause), "rename"_q);
    QProcess set;
    set.setProcessEnvironment(environment);
    set.start(GetProgramPath("hopboxctl"), scenario.arguments);
    while (!QFile::exists(report) && set.state() != QProcess::NotRunning)
        set.waitForFinished(5);
    const QString archive = root + "/Project.hopbox"_q;
    const QString lock = HopboxRegistry::GetPathName().GetNativePath() + "lock"_q;
    for (const QString& path : {archive, lock}) {
        EXPECT_TRUE(QFile::remove(path));
        EXPECT_TRUE(QDir().mkpath(path));
    }
    EXPECT_TRUE(QFile::remove(report));
    EXPECT_TRUE(set.waitForFinished());
    EXPECT_EQ(set.exitCode(), 1);
    const QByteArray error = set.readAllStandardError();
    EXPECT_TRUE(error.contains("The fields have the new values")) << error.toStdString();
    EXPECT_TRUE(error.contains("Is a directory")) << error.toStdString();
}
