#include "Ratios.h"
#include "foundation/strings/GStringPool.h"

#include <QHash>

#include <benchmark/benchmark.h>

#include <cstdlib>

// Look-up of a text by code when all three tables are searched: the texts stand in the English one alone, and
// the codes of the neutral table and of the current language's lie between its codes. Beside one QHash with
// the same texts.
namespace
{
constexpr uint32_t cFirst = 30060000;
constexpr uint32_t cCount = 2000;
constexpr uint32_t cStep = 3;
constexpr uint32_t cEnd = cFirst + cCount * cStep;

void FillPool()
{
    const GString german = QStringLiteral("deDE");
    GStringPool::Initialize();
    for (uint32_t code = cFirst; code < cEnd; code += cStep) {
        const GString text = QStringLiteral("Text %1").arg(code);
        GStringPool::GetTable(GStringPool::cEnglish).SetString(code, text, GEncoding::GetUTF8());
        GStringPool::GetTable(german).SetString(code + 1, text, GEncoding::GetUTF8());
        GStringPool::GetTable(GStringPool::cNeutral).SetString(code + 2, text, GEncoding::GetUTF8());
    }
    if (!GStringPool::SetLanguage(german))
        std::abort();
}

uint32_t GetNext(uint32_t code)
{
    return code + cStep == cEnd ? cFirst : code + cStep;
}

void PoolHit(benchmark::State& state)
{
    uint32_t code = cFirst;
    for (auto _ : state) {
        benchmark::DoNotOptimize(&GStringPool::GetString(code));
        code = GetNext(code);
    }
}
BENCHMARK(PoolHit);

void HashHit(benchmark::State& state)
{
    QHash<uint, QString> texts;
    for (uint32_t code = cFirst; code < cEnd; code += cStep)
        texts.insert(code, QStringLiteral("Text %1").arg(code));
    uint32_t code = cFirst;
    for (auto _ : state) {
        const auto found = texts.constFind(code);
        benchmark::DoNotOptimize(&*found);
        code = GetNext(code);
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
