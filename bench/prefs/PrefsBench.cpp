#include "Content.h"
#include "FreshProcess.h"
#include "KeyFile.h"
#include "Ratios.h"

#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPreferences.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>

// The settings store beside QSettings (ini) and GLib's GKeyFile: each loads, saves, gets and sets the same
// content. All three replace the file whole and flush it to disk when they save; with TMPDIR on a file system
// in memory the disk is out of the picture.
namespace
{
using Content::cEntries;
using Content::cGroups;
using Content::Place;

constexpr int32_t cModule = 0;  // the place of our module in the store

QString GetPath(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

// --- ours ---

using Module = std::unique_ptr<GPrefFileModule>;

Module OpenOurs(const QString& name)
{
    return std::make_unique<GPrefFileModule>(GPathName(GetPath(name)), GEncoding::GetUTF16());
}

// Makes a file of the content, once for each size; gives its name.
QString MakeOurs(int groups, int entries)
{
    const QString name = QStringLiteral("ours-%1-%2.prefs").arg(groups).arg(entries);
    if (!QFile::exists(GetPath(name))) {
        FreshProcess::Run([&name, groups, entries] {
            const Module module = OpenOurs(name);
            Content::ForEach(groups, entries, [&module](const Place& place) {
                module->Set(place.group, place.key, place.value);
            });
            module->FlushPrefs();
        });
    }
    return name;
}

QString MakeOurs(const benchmark::State& state)
{
    return MakeOurs(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}

// Loading is measured as a program does it that has just been started, in processor time: the files are in
// memory.
void MeasureLoad(benchmark::State& state, const std::function<void()>& load)
{
    for (auto _ : state)
        state.SetIterationTime(FreshProcess::Run(load).seconds);
}

void LoadOurs(benchmark::State& state)
{
    const QString name = MakeOurs(state);
    MeasureLoad(state, [&name] { OpenOurs(name).release(); });
}

void SaveOurs(benchmark::State& state)
{
    const Module module = OpenOurs(MakeOurs(state));
    for (auto _ : state) {
        module->SetDirty(true);
        module->FlushPrefs();
    }
}

void GetOurs(benchmark::State& state)
{
    GPreferences::SetPrefModule(cModule, OpenOurs(MakeOurs(cGroups, cEntries)));
    for (auto _ : state) {
        for (const Place& place : Content::GetSample())
            benchmark::DoNotOptimize(GPreferences::Get(place.group, place.key).size());
    }
    GPreferences::RemovePrefModule(cModule);
}

void SetOurs(benchmark::State& state)
{
    GPreferences::SetPrefModule(cModule, OpenOurs(MakeOurs(cGroups, cEntries)));
    for (auto _ : state) {
        for (const Place& place : Content::GetSample())
            GPreferences::Set(cModule, place.group, place.key, place.value);
    }
    GPreferences::RemovePrefModule(cModule);
}

// --- QSettings ---

using Settings = std::unique_ptr<QSettings>;

Settings OpenSettings()
{
    auto settings = std::make_unique<QSettings>(GetPath(QStringLiteral("peer.ini")), QSettings::IniFormat);
    settings->setIniCodec("UTF-8");
    return settings;
}

Settings MakeSettings()
{
    Settings settings = OpenSettings();
    settings->clear();
    Content::ForEach(cGroups, cEntries,
                     [&settings](const Place& place) { settings->setValue(place.path, place.value); });
    settings->sync();
    return settings;
}

void LoadSettings(benchmark::State& state)
{
    FreshProcess::Run([] { MakeSettings(); });
    MeasureLoad(state, [] {
        const Settings settings = OpenSettings();
        for (int group = 0; group < cGroups; ++group)  // a group is parsed when it is first asked
            benchmark::DoNotOptimize(settings->contains(Content::MakePlace(group, 0).path));
    });
}

void SaveSettings(benchmark::State& state)
{
    const Settings settings = MakeSettings();
    const QString path = Content::MakePlace(0, 0).path;
    int count = 0;
    for (auto _ : state) {
        settings->setValue(path, ++count);
        settings->sync();
    }
}

void GetSettings(benchmark::State& state)
{
    const Settings settings = MakeSettings();
    for (auto _ : state) {
        for (const Place& place : Content::GetSample())
            benchmark::DoNotOptimize(settings->value(place.path).toString().size());
    }
}

void SetSettings(benchmark::State& state)
{
    const Settings settings = MakeSettings();
    for (auto _ : state) {
        for (const Place& place : Content::GetSample())
            settings->setValue(place.path, place.value);
    }
}

// --- GKeyFile ---

QByteArray GetKeyFilePath()
{
    return GetPath(QStringLiteral("peer.key")).toUtf8();
}

void Fill(KeyFile& file)
{
    Content::ForEach(cGroups, cEntries,
                     [&file](const Place& place) { file.Set(place.group, place.key, place.value.toUtf8()); });
}

void LoadKeyFile(benchmark::State& state)
{
    FreshProcess::Run([] {
        KeyFile file;
        Fill(file);
        file.Save(GetKeyFilePath());
    });
    MeasureLoad(state, [] { (new KeyFile)->Load(GetKeyFilePath()); });
}

void SaveKeyFile(benchmark::State& state)
{
    KeyFile file;
    Fill(file);
    for (auto _ : state) {
        if (!file.Save(GetKeyFilePath()))
            state.SkipWithError("not saved");
    }
}

void GetKeyFile(benchmark::State& state)
{
    KeyFile file;
    Fill(file);
    for (auto _ : state) {
        for (const Place& place : Content::GetSample())
            benchmark::DoNotOptimize(file.GetLength(place.group, place.key));
    }
}

void SetKeyFile(benchmark::State& state)
{
    KeyFile file;
    Fill(file);
    std::vector<QByteArray> values;
    for (const Place& place : Content::GetSample())
        values.push_back(place.value.toUtf8());
    for (auto _ : state) {
        auto value = values.begin();
        for (const Place& place : Content::GetSample())
            file.Set(place.group, place.key, *value++);
    }
}

void AddSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Args({cGroups, cEntries})->Args({cGroups * 10, cEntries})->Args({cGroups, cEntries * 10});
}

BENCHMARK(LoadOurs)->Apply(AddSizes)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LoadSettings)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(LoadKeyFile)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(SaveOurs)->Apply(AddSizes)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveSettings)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveKeyFile)->Unit(benchmark::kMillisecond);
BENCHMARK(GetOurs);
BENCHMARK(GetSettings);
BENCHMARK(GetKeyFile);
BENCHMARK(SetOurs);
BENCHMARK(SetSettings);
BENCHMARK(SetKeyFile);

void ReportMemory()
{
    const QString name = MakeOurs(cGroups, cEntries);
    const FreshProcess::Cost cost = FreshProcess::Run([&name] { OpenOurs(name).release(); });
    std::printf("memory while loading: highest %.0f kB, kept %.0f kB, ratio %.2f\n", cost.highest, cost.kept,
                cost.highest / cost.kept);
}
}  // namespace

int main(int argc, char** argv)
{
    ReportMemory();
    return RunBenchmarks(
        argc, argv,
        {
            {"LoadOurs/200/500/manual_time", "LoadSettings/manual_time", "load beside QSettings"},
            {"LoadOurs/200/500/manual_time", "LoadKeyFile/manual_time", "load beside GKeyFile"},
            {"SaveOurs/200/500", "SaveSettings", "save beside QSettings"},
            {"SaveOurs/200/500", "SaveKeyFile", "save beside GKeyFile"},
            {"GetOurs", "GetSettings", "get beside QSettings"},
            {"GetOurs", "GetKeyFile", "get beside GKeyFile"},
            {"SetOurs", "SetSettings", "set beside QSettings"},
            {"SetOurs", "SetKeyFile", "set beside GKeyFile"},
            {"LoadOurs/2000/500/manual_time", "LoadOurs/200/500/manual_time", "load ten times the groups"},
            {"LoadOurs/200/5000/manual_time", "LoadOurs/200/500/manual_time",
             "load ten times the entries a group"},
            {"SaveOurs/2000/500", "SaveOurs/200/500", "save ten times the groups"},
            {"SaveOurs/200/5000", "SaveOurs/200/500", "save ten times the entries a group"},
            {"ReadRecordsInPlace", "ReadRecordsIntoDicts",
             "records where they stand beside those in dictionaries"},
        });
}
