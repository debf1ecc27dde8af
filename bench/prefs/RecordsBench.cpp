#include "foundation/prefs/GDictBufferReader.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

// The records of a registry, each a dictionary block in a value's text: entry by entry where it stands, as
// the list of Hopboxes is read, beside the way through a stream into a dictionary.
namespace
{
using Reader = GDictBufferReader<GString, GString>;

// Every second one has the paths of Windows, with their escapes.
GString MakeRecord(int number)
{
    const QString path = number % 2 == 0
                             ? QStringLiteral("/home/someone/Morvane/Hopbox/Cache/Settings/Press %1")
                             : QStringLiteral("C:\\\\Users\\\\Someone\\\\Morvane\\\\Hopbox\\\\Press %1");
    return QStringLiteral(
               "#BEGINDICT\r\n"
               "\"ActorName\" \"Press %1\"\r\n"
               "\"ApplicationPath\" \"%2 program\"\r\n"
               "\"ContextFilePath\" \"%2 Project.hopbox\"\r\n"
               "\"IsPlugin\" \"true\"\r\n"
               "\"PDFSettings\" \"Press %1 for newspapers\"\r\n"
               "\"HopboxName\" \"Press %1\"\r\n"
               "\"HopboxIconPath\" \"%2 Icon.png\"\r\n"
               "\"IsVirtualPrinter\" \"false\"\r\n"
               "\"IsActive\" \"true\"\r\n"
               "#ENDDICT\r\n")
        .arg(QString::number(number), path.arg(number));
}

const std::vector<GString>& GetRecords()
{
    static const std::vector<GString> records = [] {
        std::vector<GString> made;
        for (int number = 0; number < 1000; ++number)
            made.push_back(MakeRecord(number));
        return made;
    }();
    return records;
}

void Require(bool isRead)
{
    if (!isRead)
        std::abort();
}

void ReadRecordsInPlace(benchmark::State& state)
{
    const Reader::Sink take = [](const QStringRef& key, const DictValue& value) {
        benchmark::DoNotOptimize(key.size() + value.GetText().size());
    };
    for (auto _ : state) {
        for (const GString& record : GetRecords())
            Require(Reader().ReadText(record, take));
    }
}

void ReadRecordsIntoDicts(benchmark::State& state)
{
    for (auto _ : state) {
        for (const GString& record : GetRecords()) {
            GDict<GString, GString> dict;
            Require(Reader().ReadText(record, dict));
            benchmark::DoNotOptimize(&dict);
        }
    }
}

BENCHMARK(ReadRecordsInPlace)->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadRecordsIntoDicts)->Unit(benchmark::kMicrosecond);
}  // namespace
