#include "Ratios.h"
#include "foundation/core/GDict.h"

#include <QHash>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <unordered_map>
#include <vector>

// GDict beside QHash and std::unordered_map, each with the same keys in the same order. Keys are looked up by
// copies with memory of their own, in another order than they were put in, as a program meets them.

namespace
{
// One face for the three tables.
template <typename Key>
struct Dict
{
    GDict<Key, GString> table;
    void Insert(const Key& key, const GString& value) { table.Insert(key, value); }
    bool Has(const Key& key) const { return table.Find(key) != nullptr; }
    size_t Sum() const
    {
        size_t sum = 0;
        for (const auto& entry : table)
            sum += static_cast<size_t>(entry.value.size());
        return sum;
    }
};

template <typename Key>
struct Hash
{
    QHash<Key, GString> table;
    void Insert(const Key& key, const GString& value) { table.insert(key, value); }
    bool Has(const Key& key) const { return table.constFind(key) != table.constEnd(); }
    size_t Sum() const
    {
        size_t sum = 0;
        for (const GString& value : table)
            sum += static_cast<size_t>(value.size());
        return sum;
    }
};

template <typename Key>
struct QtHasher
{
    size_t operator()(const Key& key) const { return qHash(key); }
};

template <typename Key>
struct Map
{
    std::unordered_map<Key, GString, QtHasher<Key>> table;
    void Insert(const Key& key, const GString& value) { table.insert_or_assign(key, value); }
    bool Has(const Key& key) const { return table.find(key) != table.end(); }
    size_t Sum() const
    {
        size_t sum = 0;
        for (const auto& entry : table)
            sum += static_cast<size_t>(entry.second.size());
        return sum;
    }
};

GBuffer MakeKey(int number, GBuffer*)
{
    return "FilePathName_" + GBuffer::number(number);
}

GString MakeKey(int number, GString*)
{
    return QStringLiteral("FilePathName_") + GString::number(number);
}

uint32_t MakeKey(int number, uint32_t*)
{
    return 30060000u + static_cast<uint32_t>(number);
}

// Keys first, first + 1, … in a random order that is the same in every run.
template <typename Key>
std::vector<Key> MakeKeys(int first, int count, unsigned seed)
{
    std::vector<Key> keys;
    for (int number = first; number < first + count; ++number)
        keys.push_back(MakeKey(number, static_cast<Key*>(nullptr)));
    std::shuffle(keys.begin(), keys.end(), std::mt19937(seed));
    return keys;
}

template <typename Table, typename Key>
Table MakeTable(int count)
{
    Table table;
    const GString value = QStringLiteral("value");
    for (const Key& key : MakeKeys<Key>(0, count, 1))
        table.Insert(key, value);
    return table;
}

template <template <typename> class Table, typename Key>
void Insert(benchmark::State& state)
{
    const auto keys = MakeKeys<Key>(0, static_cast<int>(state.range(0)), 1);
    const GString value = QStringLiteral("value");
    for (auto _ : state) {
        Table<Key> table;
        for (const Key& key : keys)
            table.Insert(key, value);
        benchmark::DoNotOptimize(table);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <template <typename> class Table, typename Key>
void Find(benchmark::State& state, int firstSought)
{
    const int count = static_cast<int>(state.range(0));
    const auto table = MakeTable<Table<Key>, Key>(count);
    const auto sought = MakeKeys<Key>(firstSought, count, 2);
    int found = 0;
    for (auto _ : state) {
        for (const Key& key : sought)
            found += table.Has(key);
    }
    benchmark::DoNotOptimize(found);
    state.SetItemsProcessed(state.iterations() * count);
}

template <template <typename> class Table, typename Key>
void Hit(benchmark::State& state)
{
    Find<Table, Key>(state, 0);
}

template <template <typename> class Table, typename Key>
void Miss(benchmark::State& state)
{
    Find<Table, Key>(state, 10000000);
}

template <template <typename> class Table, typename Key>
void Iterate(benchmark::State& state)
{
    const auto table = MakeTable<Table<Key>, Key>(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(table.Sum());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const int cCounts[] = {4, 24, 1000, 1000000};

template <template <typename> class Table, typename Key>
void Register(const std::string& suffix)
{
    const std::pair<const char*, void (*)(benchmark::State&)> tasks[] = {{"Insert", Insert<Table, Key>},
                                                                         {"Hit", Hit<Table, Key>},
                                                                         {"Miss", Miss<Table, Key>},
                                                                         {"Iterate", Iterate<Table, Key>}};
    for (const auto& [task, function] : tasks) {
        auto* benchmark = benchmark::RegisterBenchmark((task + suffix).c_str(), function);
        for (const int count : cCounts)
            benchmark->Arg(count);
    }
}

template <typename Key>
void RegisterKey(const std::string& key, std::vector<Ratio>& ratios)
{
    Register<Dict, Key>("/GDict/" + key);
    Register<Hash, Key>("/QHash/" + key);
    Register<Map, Key>("/unordered_map/" + key);
    for (const std::string task : {"Insert", "Hit", "Miss", "Iterate"}) {
        for (const int count : cCounts) {
            const std::string end = "/" + key + "/" + std::to_string(count);
            for (const std::string peer : {"QHash", "unordered_map"})
                ratios.push_back(
                    {task + "/GDict" + end, task + "/" + peer + end,
                     task + ", " + key + " keys, " + std::to_string(count) + " entries, beside " + peer});
        }
    }
}
}  // namespace

int main(int argc, char** argv)
{
    std::vector<Ratio> ratios;
    RegisterKey<GBuffer>("GBuffer", ratios);
    RegisterKey<GString>("GString", ratios);
    RegisterKey<uint32_t>("code", ratios);
    return RunBenchmarks(argc, argv, ratios);
}
