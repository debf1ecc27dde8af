#include "EngineFixture.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FaultyDisk.h"

#include <QElapsedTimer>

#include <unistd.h>
#include <csignal>

namespace
{
// The processes that this one has started and that run.
QList<QByteArray> GetChildren()
{
    const QString own = QString::number(::getpid());
    return ReadFile("/proc/%1/task/%1/children"_q.arg(own)).simplified().split(' ');
}

class ExportFaultsTest : public EngineFixture
{
protected:
    // Exports must fail for a reason of which this is a part, and leave nothing behind.
    void ExpectFailure(const char* reason, const Adjust& adjust = nullptr, const QByteArray& settings = "")
    {
        EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings, {}, adjust), cFailure) << reason;
        EXPECT_TRUE(mHost->GetLastFailure().contains(QLatin1String(reason))) << reason;
        EXPECT_FALSE(mLog->TakeErrors().isEmpty());
        EXPECT_EQ(ListOutput(), QStringList()) << reason;
    }

    // A program that does what the Python text says with a request for a PDF (or that operation), as
    // `request`, and leaves others to Scribus.
    void UseFaultyScribus(const QByteArray& python, const QByteArray& operation = "pdf")
    {
        RestartHost(
            "#!/usr/bin/python3\n"
            "import json, os, signal, sys, time\n"
            "if sys.argv[-1] == '-pi': os.execv('/usr/bin/scribus', sys.argv)\n"
            "request = json.loads(sys.argv[-1])\n"
            "if request['operation'] != '" +
            operation +
            "': os.execv('/usr/bin/scribus', sys.argv)\n"
            "if 'output' in request: output = open(request['output'], 'w')\n"
            "def answer(): open(request['answer'], 'w').write('{}')\n" +
            python + "\n");
    }
};

TEST_F(ExportFaultsTest, ADocumentThatChangesOrGoesIsNotExported)
{
    const QString path = MakeDocument("a.sla"_q, 2);
    const QByteArray content = ReadFile(path);
    Open(path);
    bool isChanged = false;
    mFrontend.onWait = [&] {
        isChanged = isChanged || WriteFile(path, content + " ");  // long before Scribus reads it
        return false;
    };
    ExpectFailure("was changed while it was exported");
    mFrontend.onWait = nullptr;
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->pages.size(), 2);
    for (const double bad : {-1.0, 20000.0, qQNaN()})
        ExpectFailure("is no top bleed", [bad](IPDFExportPreferences& preferences) {
            preferences.SetLength(PDFLength::BleedTop, bad);
        });
    MakeDocument("a.sla"_q, 3);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->pages.size(), 3);
    QFile::remove(path);
    ExpectFailure("There is no file");
    EXPECT_EQ(mHost->QueryLayoutUtils()->QueryFrontDocument()->QueryFontList().Get(), nullptr);
    WriteFile(path, content.left(content.size() / 2));
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo(), nullptr);
}

TEST_F(ExportFaultsTest, AScribusThatIsKilledOrCancelledLeavesNothing)
{
    CancelCounter observer;
    mHost->SetCancelObserver(&observer);
    Open(MakeDocument("a.sla"_q, 2));
    mFrontend.onWait = [] {
        for (const QByteArray& child : GetChildren())
            ::kill(child.toInt(), child.isEmpty() ? 0 : SIGKILL);
        return false;
    };
    ExpectFailure("was killed or crashed");
    EXPECT_EQ(observer.count, 0);
    mFrontend.onWait = [] { return true; };
    ExpectFailure("The user cancelled");
    EXPECT_EQ(observer.count, 1);
    const QString output = GetOutput("a.pdf"_q);
    mFrontend.onWait = [&] { return QFile::exists(output); };  // all of the work is done then
    ExpectFailure("The user cancelled");
    EXPECT_EQ(observer.count, 2);
    EXPECT_EQ(GetChildren(), QList<QByteArray>{QByteArray()});
}

TEST_F(ExportFaultsTest, AScribusThatFailsOrLiesIsFoundOut)
{
    const std::pair<QByteArray, const char*> cases[] = {
        {"output.write('%PDF-1.4'); output.flush(); os.kill(os.getpid(), signal.SIGSEGV)",
         "was killed or crashed"},
        {"print('the last line'); sys.exit(0)", "scribus failed (0)."},
        {"output.write('%PDF-1.4 a part'); output.close(); answer()", "Scribus made no whole PDF"},
        {"os.remove(request['output']); answer()", "Scribus made no whole PDF"},
        {"open(request['answer'], 'w').write('{\"error\": \"no room\"}')",
         "Scribus can't open the document; it may be damaged."},
        {"open(request['answer'], 'w').write('{\"error\": \"no room\", \"opened\": true}')",
         "Scribus failed: no room."},
        {"open(request['answer'], 'w').write('{\"half')", "failed"},
        {"time.sleep(100)", "took more than 1 s"},
    };
    const QString path = MakeDocument("a.sla"_q, 1);
    for (const auto& [python, reason] : cases) {
        UseFaultyScribus(python);
        Open(path);
        if (python.contains("sleep"))
            mHost->GetRunner().SetTimeLimit(1);
        ExpectFailure(reason);
    }
    ScribusSetup missing = GetSetup();
    missing.scribus = "/nowhere/scribus"_q;
    RestartHost(missing);
    EXPECT_EQ(mHost->OpenDocument(path).GetReason(), "/nowhere/scribus can't be started."_q);
}

TEST_F(ExportFaultsTest, AScribusThatWaitsForAnAnswerIsEndedAndOneThatWorksIsNot)
{
    const QString path = MakeDocument("a.sla"_q, 1);
    UseFaultyScribus("time.sleep(100)", "info");
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(mHost->OpenDocument(path).GetReason(),
              "Scribus shows a dialog that nobody can see while it opens the document; it was ended."_q);
    EXPECT_LT(time.elapsed(), 15000);
    UseFaultyScribus(
        "end = time.time() + 10\nwhile time.time() < end: pass\nos.execv('/usr/bin/scribus', sys.argv)",
        "info");
    EXPECT_EQ(mHost->OpenDocument(path).GetReason(), QString());
}

TEST_F(ExportFaultsTest, AWholePdfThatIsNotWhatWasAskedForIsFoundOut)
{
    // change: of the request
    const std::tuple<QByteArray, const char*, const char*> cases[] = {
        {"request['pages'] = [1]", "", "a PDF of 1 pages in the place of 2"},
        {"request['options']['version'] = 14", cForX, "does not bear the mark of PDF/X"},
    };
    const QString path = MakeDocument("a.sla"_q, 2);
    for (const auto& [change, settings, reason] : cases) {
        UseFaultyScribus(change + "\nos.execv('/usr/bin/scribus', sys.argv[:-1] + [json.dumps(request)])");
        Open(path);
        ExpectFailure(reason, nullptr, settings);
    }
}

// Exports onto a disk of a few KB. The status is 0 when that failed and left nothing there.
CHILD_ROLE(ExportToSmallDisk)
{
    const QString folder = arguments[1];
    if (!MountSmallDisk(folder, 8192))
        return 77;
    ScribusSetup setup;
    setup.home = arguments[2];
    ScribusHost host(setup);
    if (!host.OpenDocument(arguments[0]).HasSucceeded())
        return 2;
    const HostPtr<ICommand> command = host.CreateCommand(HostClassID::cPDFExportCommand);
    UIDList pages(host.QueryLayoutUtils()->QueryFrontDocument()->GetDataBase());
    for (UID page = 1; page <= 40; ++page)
        pages.Append(page);
    command->QuerySystemFileData()->SetFile(IDFile(PMString(folder + "/a.pdf"_q)));
    command->QueryOutputPages()->SetPages(pages, false);
    if (host.ProcessCommand(*command) == cSuccess)
        return 3;
    return QDir(folder).entryList(QDir::Files).isEmpty() ? 0 : 4;
}

TEST_F(ExportFaultsTest, AFullDiskLeavesNothing)
{
    const QString path = MakeDocument("a.sla"_q, 40);
    ChildProcess child("ExportToSmallDisk"_q, {path, mSandbox.GetPath("out"_q), GetSetup().home});
    const int status = child.WaitForExit();
    if (status == 77)
        GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(status, 0);
}
}  // namespace
