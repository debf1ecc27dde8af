#include "Exporter.h"
#include "Ratios.h"
#include "RecordedScribus.h"

#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/runner/IHostFrontend.h"
#include "plugin/boundary/HostTable.h"
#include "plugin/boundary/TableHost.h"
#include "plugin/host/HostCalls.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>

// The plug-in's own share of an export of a real document: its time from the dialog's OK to the sent ticket
// without the host's command, beside Scribus run alone with the same options, and beside the whole export.
// The host is reached as a loaded module reaches it, through both sides of the C boundary; its answers to
// questions about the document count as the plug-in's time.
namespace
{
constexpr int64_t cHundredPages = 3;  // made for this run
const char* const cDocuments[] = {
    "/usr/share/scribus/templates/nl2/nl2.sla.gz",                               // four pages of text
    "/usr/share/scribus/templates/pres_backgr_1/blue_orange_vector.sla.gz",      // one page of curves
    "/usr/share/scribus/templates/buscard_coll/business_card_collection.sla.gz"  // many small frames
};

const char* const cJobOptions =
    "<< /CompatibilityLevel 1.4 /EmbedAllFonts true /DownsampleColorImages true /ColorImageResolution 150 >>"
    " setdistillerparams\n";

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// The host over Scribus, which keeps how long its commands take.
class TimedHost final : public IHostServices
{
public:
    explicit TimedHost(ScribusHost& host) : mHost(host) {}

    int32_t GetVersion() const override { return mHost.GetVersion(); }
    HostPtr<ISession> QuerySession() override { return mHost.QuerySession(); }
    HostPtr<IUnitOfMeasureSettings> QueryUnitPreferences(IActiveContext* context) override
    {
        return mHost.QueryUnitPreferences(context);
    }
    HostPtr<ILayoutUtils> QueryLayoutUtils() override { return mHost.QueryLayoutUtils(); }
    HostPtr<IDocumentUtils> QueryDocumentUtils() override { return mHost.QueryDocumentUtils(); }
    HostPtr<IModalUtils> QueryModalUtils() override { return mHost.QueryModalUtils(); }
    HostPtr<ICommand> CreateCommand(ClassID command) override { return mHost.CreateCommand(command); }
    ErrorCode ProcessCommand(ICommand& command) override
    {
        const Clock::time_point start = Clock::now();
        const ErrorCode result = mHost.ProcessCommand(command);
        seconds = Seconds(Clock::now() - start).count();
        return result;
    }
    void SetCancelObserver(ICancelObserver* observer) override { mHost.SetCancelObserver(observer); }
    HostPtr<IObjectModel> QueryObjectModel() override { return mHost.QueryObjectModel(); }
    int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                       const PMString& button3, int32_t defaultButton, int32_t cancelButton) override
    {
        return mHost.ModalAlert(text, button1, button2, button3, defaultButton, cancelButton);
    }

    double seconds = 0;  // of the last command

private:
    ScribusHost& mHost;
};

// A user who wants each export: some of the documents lack a picture.
class WillingUser final : public IHostFrontend
{
public:
    void BeginCommand(const QString&, int) override {}
    void BeginStep(const QString&) override {}
    bool IsCancelled() override { return false; }
    void EndCommand() override {}
    int32_t ShowAlert(const QString&, const QString&, const QString&, const QString&, int32_t button,
                      int32_t) override
    {
        return button;
    }
    Decision AskToGoOn(const QString&, const QStringList&) override { return Decision::GoOn; }
    QString AskForSavePath(const QString&) override { return {}; }
};

// An export of one of the documents, through the plug-in and the host over Scribus.
class RealExport
{
public:
    explicit RealExport(int64_t document)
        : mExporter(1, QByteArray(cJobOptions)),
          mHost(mScribus.GetSetup()),
          mTimedHost(mHost),
          mTable(mTimedHost),
          mTableHost(HostTable::GetTable(), &mTable)
    {
        mHost.SetFrontend(&mUser);
        const GResult opened =
            mHost.OpenDocument(document == cHundredPages ? RecordedScribus::MakeDocument(
                                                               QStringLiteral(HUNDRED_PAGES),
                                                               mFolder.filePath(QStringLiteral("100.sla")))
                                                         : QString::fromLatin1(cDocuments[document]));
        if (!opened.HasSucceeded())
            qFatal("%s", qUtf8Printable(opened.GetReason()));
        HostServices::Set(&mTableHost);
    }

    // Gives the seconds that it took as a whole. False in `isDone` when it failed.
    double Export(bool& isDone) { return mExporter.Export(isDone); }

    double GetHostSeconds() const { return mTimedHost.seconds; }
    const RecordedScribus& GetScribus() const { return mScribus; }

private:
    Exporter mExporter;
    RecordedScribus mScribus;
    QTemporaryDir mFolder;
    WillingUser mUser;
    ScribusHost mHost;
    TimedHost mTimedHost;
    HostTable mTable;
    TableHost mTableHost;
};

void Whole(benchmark::State& state)
{
    RealExport run(state.range(0));
    for (auto _ : state) {
        bool isDone = false;
        state.SetIterationTime(run.Export(isDone));
        if (!isDone)
            state.SkipWithError("the export failed");
    }
}
BENCHMARK(Whole)->DenseRange(0, cHundredPages)->Iterations(7)->UseManualTime()->Unit(benchmark::kMillisecond);

void PlugIn(benchmark::State& state)
{
    RealExport run(state.range(0));
    for (auto _ : state) {
        bool isDone = false;
        const double seconds = run.Export(isDone);
        state.SetIterationTime(seconds - run.GetHostSeconds());
        if (!isDone)
            state.SkipWithError("the export failed");
    }
}
BENCHMARK(PlugIn)
    ->DenseRange(0, cHundredPages)
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

void ScribusAlone(benchmark::State& state)
{
    RealExport run(state.range(0));
    bool isDone = false;
    run.Export(isDone);
    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        if (!isDone || !run.GetScribus().Repeat())
            state.SkipWithError("Scribus failed");
        state.SetIterationTime(Seconds(Clock::now() - start).count());
    }
}
BENCHMARK(ScribusAlone)
    ->DenseRange(0, cHundredPages)
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    std::vector<Ratio> ratios;
    for (const char* number : {"0", "1", "2", "3"}) {
        const std::string ending = std::string("/") + number + "/iterations:7/manual_time";
        ratios.push_back({"PlugIn" + ending, "ScribusAlone" + ending, "the plug-in beside Scribus alone"});
        ratios.push_back({"PlugIn" + ending, "Whole" + ending, "the plug-in's share of the export"});
    }
    return RunBenchmarks(argc, argv, ratios);
}
