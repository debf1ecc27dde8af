#include "Ratios.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>

// The operations of the Hopbox registry, each as a task does it: open, work, close. Beside them the reading
// of the registry's file alone.

namespace
{
GString GetName(int number)
{
    return QStringLiteral("Hopbox of press %1").arg(number);
}

HopboxRecord MakeRecord(int number)
{
    HopboxRecord record;
    record.actorName = GetName(number);
    const GPathName cache(QDir::temp().absoluteFilePath(QStringLiteral("Morvane/Hopbox/Cache")));
    record.entry.applicationPath = cache.GetChild(QStringLiteral("700000/PrinterProcessorWin.exe"));
    record.entry.contextFilePath =
        cache.GetChild(QStringLiteral("Settings/%1/Project.hopbox").arg(GetName(number)));
    record.entry.pdfSettings = GetName(number);
    record.entry.hopboxName = GetName(number);
    record.entry.isPlugin = true;
    record.entry.isActive = true;
    return record;
}

// A root of its own whose registry holds so many entries.
class FilledRegistry
{
public:
    explicit FilledRegistry(int count)
    {
        qputenv("MORVANE_ROOT", mFolder.path().toUtf8());
        const HopboxRegistry folderMaker;
        GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
        for (int number = 0; number < count; ++number)
            module.Set("PrinterProcessorRegistry", GBuffer::number(number), MakeRecord(number).ToText());
        module.FlushPrefs();
    }

private:
    QTemporaryDir mFolder;
};

template <typename Task>
void Measure(benchmark::State& state, Task task)
{
    const int count = static_cast<int>(state.range(0));
    const FilledRegistry registry(count);
    for (auto _ : state)
        task(count);
    state.SetItemsProcessed(state.iterations() * count);
}

void ReadFile(benchmark::State& state)
{
    Measure(state, [](int) {
        const GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
        benchmark::DoNotOptimize(&module);
    });
}

// The entry that is looked for is the last one in the order of the file.
void Get(benchmark::State& state)
{
    GString name;
    Measure(state, [&name](int) {
        const HopboxRegistry registry;
        if (name.isEmpty())
            name = GetName(registry.GetKeys().last().toInt());
        HopboxRegistryEntry entry;
        if (!registry.GetEntry(name, entry))
            std::abort();
    });
}

void List(benchmark::State& state)
{
    Measure(state, [](int count) {
        if (HopboxRegistry().GetActorNames().size() != count)
            std::abort();
    });
}

void Update(benchmark::State& state)
{
    Measure(state, [](int count) {
        if (!HopboxRegistry().UpdateEntry(GetName(count - 1), MakeRecord(count - 1).entry))
            std::abort();
    });
}

BENCHMARK(ReadFile)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Get)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(List)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Update)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
}  // namespace

int main(int argc, char** argv)
{
    return RunBenchmarks(
        argc, argv,
        {{"Get/10000", "ReadFile/10000", "get from 10,000 entries, beside reading the file"},
         {"List/10000", "ReadFile/10000", "list 10,000 entries, beside reading the file"},
         {"Update/10000", "ReadFile/10000", "update one of 10,000 entries, beside reading the file"},
         {"Get/10000", "Get/1000", "get from 10 times the entries"},
         {"List/10000", "List/1000", "list 10 times the entries"},
         {"Update/10000", "Update/1000", "update among 10 times the entries"}});
}
