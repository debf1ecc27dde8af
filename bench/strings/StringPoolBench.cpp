#include "Ratios.h"
#include "foundation/strings/GStringPool.h"

#include <QHash>

#include <benchmark/benchmark.h>

// Look-up of a text by code when all three tables are asked: the texts stand in the English one alone, under
// a current language that has as many others. Beside one QHash with the same codes.
namespace
{
constexpr uint32_t cFirst = 30060000;
constexpr uint32_t cCount = 2000;

void FillPool()
{
    const GString german = QStringLiteral("deDE");
    GStringPool::Initialize();
    for (uint32_t code = cFirst; code < cFirst + cCount; ++code) {
        const GString text = QStringLiteral("Text %1").arg(code);
        GStringPool::GetTable(GStringPool::cEnglish).SetString(code, text, GEncoding::GetUTF8());
        GStringPool::GetTable(german).SetString(code + cCount, text, GEncoding::GetUTF8());
        GStringPool::GetTable(GStringPool::cNeutral).SetString(code + 2 * cCount, text, GEncoding::GetUTF8());
    }
    GStringPool::SetLanguage(german);
}

void PoolHit(benchmark::State& state)
{
    uint32_t code = cFirst;
    for (auto _ : state) {
        benchmark::DoNotOptimize(&GStringPool::GetString(code));
        code = code + 1 == cFirst + cCount ? cFirst : code + 1;
    }
}
BENCHMARK(PoolHit);

void HashHit(benchmark::State& state)
{
    QHash<uint, QString> texts;
    for (uint32_t code = cFirst; code < cFirst + cCount; ++code)
        texts.insert(code, QStringLiteral("Text %1").arg(code));
    uint32_t code = cFirst;
    for (auto _ : state) {
        const auto found = texts.constFind(code);
        benchmark::DoNotOptimize(&*found);
        code = code + 1 == cFirst + cCount ? cFirst : code + 1;
    }
}
BENCHMARK(HashHit);
}  // namespace

int main(int argc, char** argv)
{
    FillPool();
    return RunBenchmarks(argc, argv,
                         {{"PoolHit", "HashHit", "text by code, third table / QHash<uint, QString>"}});
}
