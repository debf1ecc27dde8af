#include "Exporter.h"
#include "Ratios.h"

#include "export/GCPTSmartPathName.h"
#include "export/PlacedJobOptions.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxHandOff.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

// The plug-in's own time from the dialog's OK to the sent ticket, by the number of registered Hopboxes and
// the size of the project archive in MB; then the parts that it is spent on, each alone. The host's command,
// which writes 600 bytes here, is in the whole.
namespace
{
constexpr int cMegabyte = 1 << 20;

void WholeExport(benchmark::State& state)
{
    Exporter exporter(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)) * cMegabyte);
    for (auto _ : state) {
        bool isDone = false;
        state.SetIterationTime(exporter.Export(isDone));
        if (!isDone)
            state.SkipWithError("the export failed");
    }
}
BENCHMARK(WholeExport)
    ->ArgsProduct({{1, 100, 1000}, {1, 50}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// A temporary folder is listed, made, removed and taken off the list; an export has three such things.
void OneTemporaryItem(benchmark::State& state)
{
    const Exporter exporter(1, 1);
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary);
    for (auto _ : state)
        GCPTSmartPathName::MakeFolder(folder, QStringLiteral("XXXXX"));
}
BENCHMARK(OneTemporaryItem)->Unit(benchmark::kMillisecond)->UseRealTime();

// What the disk alone takes of that: the list's file is replaced durably twice.
void TwoDurableWrites(benchmark::State& state)
{
    const Exporter exporter(1, 1);
    const GPathName path = exporter.GetArchive().GetParent().GetChild(QStringLiteral("settings"));
    for (auto _ : state) {
        for (int write = 0; write < 2; ++write) {
            GDurableFile file(path);
            file.Write("settings", 8);
            file.Commit();
        }
    }
}
BENCHMARK(TwoDurableWrites)->Unit(benchmark::kMillisecond)->UseRealTime();

void FindHopbox(benchmark::State& state)
{
    const Exporter exporter(static_cast<int>(state.range(0)), 1);
    for (auto _ : state) {
        HopboxRegistryEntry entry;
        if (!HopboxRegistry().GetEntry(exporter.GetKey(), entry))
            state.SkipWithError("not found");
    }
}
BENCHMARK(FindHopbox)->Arg(1)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

// Settings into memory, job options into a folder, which goes.
void ReadProject(benchmark::State& state)
{
    const Exporter exporter(1, static_cast<int>(state.range(0)) * cMegabyte);
    const GPathName folder =
        GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetChild(QStringLiteral("p"));
    for (auto _ : state) {
        HopboxProject project(exporter.GetArchive());
        GPrefMemoryModule settings;
        GPathName jobOptions;
        if (!project.ReadSettings(settings).HasSucceeded() ||
            !project.ExtractJobOptions(folder, jobOptions).HasSucceeded())
            state.SkipWithError("not read");
        GFileSystemBase::DropFolder(folder);
    }
}
BENCHMARK(ReadProject)->Arg(1)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();

// With its temporary item.
void PlaceJobOptions(benchmark::State& state)
{
    const Exporter exporter(1, static_cast<int>(state.range(0)) * cMegabyte);
    for (auto _ : state) {
        if (!PlacedJobOptions(exporter.GetJobOptions()).IsPlaced())
            state.SkipWithError("not placed");
    }
}
BENCHMARK(PlaceJobOptions)->Arg(1)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();

void SendTicket(benchmark::State& state)
{
    const Exporter exporter(1, 1);
    for (auto _ : state) {
        if (!HopboxHandOff::SubmitJob(QStringLiteral("Hopbox 1"), QStringLiteral("/tmp/a.pdf")))
            state.SkipWithError("not sent");
    }
}
BENCHMARK(SendTicket)->Unit(benchmark::kMillisecond)->UseRealTime();
}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const std::string whole = "WholeExport/1/1/manual_time";
    return RunBenchmarks(
        argc, argv,
        {{"WholeExport/1000/1/manual_time", whole, "1,000 Hopboxes beside one"},
         {"WholeExport/1/50/manual_time", whole, "an archive of 50 MB beside one of 1 MB"},
         {"OneTemporaryItem/real_time", "TwoDurableWrites/real_time",
          "a temporary item beside the disk alone"},
         {"OneTemporaryItem/real_time", whole, "share of one temporary item (of three)"},
         {"ReadProject/1/real_time", whole, "share of reading the project"},
         {"PlaceJobOptions/1/real_time", whole, "share of placing the job options, with its temporary item"},
         {"FindHopbox/1/real_time", whole, "share of finding the Hopbox"},
         {"SendTicket/real_time", whole, "share of sending the ticket"}});
}
