#include "KeyFile.h"
#include "Ratios.h"

#include "foundation/core/GFileInputStream.h"
#include "foundation/core/GFileOutputStream.h"
#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefWriter.h"
#include "foundation/prefs/GText2BinStream.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

// The settings store beside QSettings (ini) and GLib's GKeyFile: each loads, saves, reads and changes the
// same content.
namespace
{
constexpr int cGroups = 200;
constexpr int cEntries = 500;

GString GetGroupName(int group)
{
    return QStringLiteral("Group of settings %1").arg(group);
}

GString GetKeyName(int entry)
{
    return QStringLiteral("SettingsEntry%1").arg(entry);
}

// What settings hold: booleans, numbers, names, paths, and now and then a list.
GString GetValue(int group, int entry)
{
    switch (entry % 5) {
        case 0:
            return entry % 2 == 0 ? QStringLiteral("true") : QStringLiteral("false");
        case 1:
            return GString::number(group * 1000 + entry);
        case 2:
            return QStringLiteral("Gr\u00F6\u00DFe \u4E2D %1").arg(entry);
        case 3:
            return QStringLiteral("C:\\Users\\Someone\\Documents\\Job %1\\Print file %2.pdf")
                .arg(group)
                .arg(entry);
        default:
            return QStringLiteral("#BEGINTABLE\r\n\"one of %1\"\r\n\"two of %2\"\r\n#ENDTABLE\r\n")
                .arg(group)
                .arg(entry);
    }
}

using EntryOperation = std::function<void(int group, int entry)>;

void ForEachEntry(int groups, int entries, const EntryOperation& operation)
{
    for (int group = 0; group < groups; ++group) {
        for (int entry = 0; entry < entries; ++entry)
            operation(group, entry);
    }
}

GString GetPath(const char* name)
{
    static const QTemporaryDir folder;
    return folder.filePath(QString::fromLatin1(name));
}

// --- ours ---

GPrefGroups MakeGroups(int groupCount, int entryCount)
{
    GPrefGroups groups;
    ForEachEntry(groupCount, entryCount, [&groups](int group, int entry) {
        groups.FindOrInsert(GetGroupName(group).toLatin1())
            .Insert(GetKeyName(entry).toLatin1(), GetValue(group, entry));
    });
    return groups;
}

void Save(const GPrefGroups& groups, const GString& path)
{
    GFileOutputStream file(path);
    GText2BinStream stream(file, GEncoding::GetUTF16());
    GPrefWriter::WriteDocument(stream, groups);
    file.Close();
}

void Load(const GString& path, GPrefGroups& groups)
{
    GFileInputStream file(path);
    GDictListReader<GBuffer, GBuffer, GString> reader;
    reader.Read(file, GEncoding::GetUTF16(), groups);
}

void LoadOurs(benchmark::State& state)
{
    const GString path = GetPath("ours.prefs");
    Save(MakeGroups(static_cast<int>(state.range(0)), static_cast<int>(state.range(1))), path);
    for (auto _ : state) {
        auto groups = std::make_unique<GPrefGroups>();
        Load(path, *groups);
        state.PauseTiming();
        groups.reset();
        state.ResumeTiming();
    }
}

void SaveOurs(benchmark::State& state)
{
    const GString path = GetPath("ours.prefs");
    GPrefGroups groups = MakeGroups(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state)
        Save(groups, path);
}

// --- QSettings ---

std::unique_ptr<QSettings> OpenSettings()
{
    auto settings = std::make_unique<QSettings>(GetPath("peer.ini"), QSettings::IniFormat);
    settings->setIniCodec("UTF-8");
    return settings;
}

GString GetSettingsKey(int group, int entry)
{
    return GetGroupName(group) + QLatin1Char('/') + GetKeyName(entry);
}

std::unique_ptr<QSettings> MakeSettings()
{
    QFile::remove(GetPath("peer.ini"));
    auto settings = OpenSettings();
    ForEachEntry(cGroups, cEntries, [&settings](int group, int entry) {
        settings->setValue(GetSettingsKey(group, entry), GetValue(group, entry));
    });
    settings->sync();
    return settings;
}

// QSettings keeps what it read of a file that did not change since.
void TouchSettings()
{
    static QDateTime time = QDateTime::currentDateTime();
    time = time.addSecs(1);
    QFile file(GetPath("peer.ini"));
    file.open(QIODevice::ReadWrite);
    file.setFileTime(time, QFileDevice::FileModificationTime);
}

void LoadSettings(benchmark::State& state)
{
    MakeSettings();
    for (auto _ : state) {
        state.PauseTiming();
        TouchSettings();
        state.ResumeTiming();
        auto settings = OpenSettings();
        for (int group = 0; group < cGroups; ++group)  // a group is parsed when it is first asked
            benchmark::DoNotOptimize(settings->contains(GetSettingsKey(group, 0)));
        state.PauseTiming();
        settings.reset();
        state.ResumeTiming();
    }
}

void SaveSettings(benchmark::State& state)
{
    const auto settings = MakeSettings();
    int count = 0;
    for (auto _ : state) {
        settings->setValue(GetSettingsKey(0, 0), ++count);
        settings->sync();
    }
}

// --- GKeyFile ---

void FillKeyFile(KeyFile& file)
{
    ForEachEntry(cGroups, cEntries, [&file](int group, int entry) {
        file.Set(GetGroupName(group).toUtf8(), GetKeyName(entry).toUtf8(), GetValue(group, entry).toUtf8());
    });
}

void LoadKeyFile(benchmark::State& state)
{
    const GBuffer path = GetPath("peer.key").toUtf8();
    KeyFile saved;
    FillKeyFile(saved);
    saved.Save(path);
    for (auto _ : state) {
        auto file = std::make_unique<KeyFile>();
        if (!file->Load(path))
            state.SkipWithError("not loaded");
        state.PauseTiming();
        file.reset();
        state.ResumeTiming();
    }
}

void SaveKeyFile(benchmark::State& state)
{
    const GBuffer path = GetPath("peer.key").toUtf8();
    KeyFile file;
    FillKeyFile(file);
    for (auto _ : state) {
        if (!file.Save(path))
            state.SkipWithError("not saved");
    }
}

BENCHMARK(LoadOurs)
    ->Args({cGroups, cEntries})
    ->Args({cGroups * 10, cEntries})
    ->Args({cGroups, cEntries * 10})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SaveOurs)->Args({cGroups, cEntries})->Unit(benchmark::kMillisecond);
BENCHMARK(LoadSettings)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveSettings)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadKeyFile)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveKeyFile)->Unit(benchmark::kMillisecond);
}  // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(
        argc, argv,
        {
            {"LoadOurs/200/500", "LoadSettings", "load beside QSettings"},
            {"LoadOurs/200/500", "LoadKeyFile", "load beside GKeyFile"},
            {"LoadOurs/2000/500", "LoadOurs/200/500", "load ten times the groups"},
            {"LoadOurs/200/5000", "LoadOurs/200/500", "load ten times the entries in each group"},
            {"SaveOurs/200/500", "SaveSettings", "save beside QSettings"},
            {"SaveOurs/200/500", "SaveKeyFile", "save beside GKeyFile"},
        });
}
