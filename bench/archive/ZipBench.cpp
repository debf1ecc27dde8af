#include "archive/ZipHelper.h"

#include "Ratios.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <random>

// Extraction and creation of archives, beside the programs unzip, zip and 7z on the same data. Our side runs
// in this process, theirs in one of their own; the time to start a program (a few milliseconds) is theirs.
//
// Every run begins with an empty target, which is made outside the measured time.
namespace
{
constexpr int cLargeSize = 200 * 1024 * 1024;
constexpr int cSmallSize = 4 * 1024;
constexpr int cSmallCount = 5000;
constexpr int cLevel = 6;

// Words and noise in turns, about half of which compression takes away.
QByteArray MakeContent(int size, unsigned seed)
{
    std::mt19937 random(seed);
    QByteArray content;
    content.reserve(size + 16);
    while (content.size() < size) {
        const bool isNoise = (content.size() >> 16) % 3 == 2;
        for (int count = 0; count < 1000 && content.size() < size; ++count) {
            const unsigned number = static_cast<unsigned>(random());
            if (isNoise)
                content.append(reinterpret_cast<const char*>(&number), sizeof number);
            else
                content += QByteArray::number(number % 5000 * 7919 % 100003, 36) + ' ';
        }
    }
    content.truncate(size);
    return content;
}

void WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::abort();
}

// The scratch data of all benchmarks; goes with the process.
class Scratch
{
public:
    Scratch()
    {
        QDir(mFolder.path()).mkpath(QStringLiteral("large"));
        QDir(mFolder.path()).mkpath(QStringLiteral("small"));
        WriteFile(GetPath(QStringLiteral("large/file")), MakeContent(cLargeSize, 1));
        for (int number = 0; number < cSmallCount; ++number)
            WriteFile(GetPath(QStringLiteral("small/%1").arg(number)), MakeContent(cSmallSize, number + 2u));
    }

    QString GetPath(const QString& name) const { return mFolder.filePath(name); }

private:
    QTemporaryDir mFolder;
};

Scratch& GetScratch()
{
    static Scratch scratch;
    return scratch;
}

struct Case
{
    const char* data;      // the folder
    const char* password;  // empty for none

    QString GetName() const
    {
        return QString::fromLatin1(data) + QLatin1String(*password != 0 ? "/password" : "/plain");
    }
};

const Case cCases[] = {{"large", ""}, {"large", "secret"}, {"small", ""}, {"small", "secret"}};

void Run(const QString& folder, const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        std::abort();
}

QString GetArchive(const Case& test)
{
    const QString path = GetScratch().GetPath(test.GetName().replace(QLatin1Char('/'), QLatin1Char('-'))) +
                         QStringLiteral(".zip");
    if (!QFile::exists(path)) {
        QStringList arguments = {QStringLiteral("-qr6"), path, QStringLiteral(".")};
        if (*test.password != 0)
            arguments = QStringList{QStringLiteral("-P"), QString::fromLatin1(test.password)} + arguments;
        Run(GetScratch().GetPath(QString::fromLatin1(test.data)), QStringLiteral("zip"), arguments);
    }
    return path;
}

using Work = std::function<void(const Case& test, const QString& target)>;

void ExtractOurs(const Case& test, const QString& target)
{
    if (!ZipHelper::extractFiles(GetArchive(test), target, ZipPaths::Keep, QString::fromLatin1(test.password),
                                 ZipOnError::Stop, 0))
        std::abort();
}

void ExtractUnzip(const Case& test, const QString& target)
{
    QStringList arguments = {QStringLiteral("-q"), GetArchive(test)};
    if (*test.password != 0)
        arguments = QStringList{QStringLiteral("-P"), QString::fromLatin1(test.password)} + arguments;
    Run(target, QStringLiteral("unzip"), arguments);
}

void ExtractSevenZip(const Case& test, const QString& target)
{
    Run(target, QStringLiteral("7z"),
        {QStringLiteral("x"), QLatin1String("-p") + QLatin1String(test.password), GetArchive(test)});
}

void CreateOurs(const Case& test, const QString& target)
{
    if (!ZipHelper::compressFolderContents(
            GetScratch().GetPath(QString::fromLatin1(test.data)), target + QStringLiteral("/made.zip"),
            Morvane::ZipStart::Create, QString::fromLatin1(test.password), cLevel, Morvane::ZipNames::Plain))
        std::abort();
}

void CreateZip(const Case& test, const QString& target)
{
    QStringList arguments = {QStringLiteral("-qr%1").arg(cLevel), target + QStringLiteral("/made.zip"),
                             QStringLiteral(".")};
    if (*test.password != 0)
        arguments = QStringList{QStringLiteral("-P"), QString::fromLatin1(test.password)} + arguments;
    Run(GetScratch().GetPath(QString::fromLatin1(test.data)), QStringLiteral("zip"), arguments);
}

void CreateSevenZip(const Case& test, const QString& target)
{
    QStringList arguments = {QStringLiteral("a"), QStringLiteral("-tzip"),
                             QStringLiteral("-mx=%1").arg(cLevel), target + QStringLiteral("/made.zip"),
                             QStringLiteral(".")};
    if (*test.password != 0)
        arguments.insert(2, QLatin1String("-p") + QLatin1String(test.password));
    Run(GetScratch().GetPath(QString::fromLatin1(test.data)), QStringLiteral("7z"), arguments);
}

void Measure(benchmark::State& state, const Case& test, const Work& work)
{
    GetArchive(test);
    const QString target = GetScratch().GetPath(QStringLiteral("target"));
    for (auto _ : state) {
        QDir(target).removeRecursively();
        QDir().mkpath(target);
        QElapsedTimer timer;
        timer.start();
        work(test, target);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    }
    QDir(target).removeRecursively();
}

struct Contestant
{
    const char* name;
    Work work;
};

// Registers one benchmark; gives the name under which its result is found.
std::string Register(const Contestant& contestant, const Case& test)
{
    const std::string name = std::string(contestant.name) + "/" + test.GetName().toStdString();
    benchmark::RegisterBenchmark(
        name.c_str(), [test, contestant](benchmark::State& state) { Measure(state, test, contestant.work); })
        ->Iterations(1)
        ->Repetitions(3)
        ->ReportAggregatesOnly()
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
    return name + "/iterations:1/repeats:3/manual_time";
}
}  // namespace

int main(int argc, char** argv)
{
    const Contestant extraction[] = {
        {"extract/ours", ExtractOurs}, {"extract/unzip", ExtractUnzip}, {"extract/7z", ExtractSevenZip}};
    const Contestant creation[] = {
        {"create/ours", CreateOurs}, {"create/zip", CreateZip}, {"create/7z", CreateSevenZip}};
    std::vector<Ratio> ratios;
    for (const auto& contestants : {extraction, creation}) {
        for (const Case& test : cCases) {
            const std::string ours = Register(contestants[0], test);
            for (int peer = 1; peer < 3; ++peer)
                ratios.push_back({ours, Register(contestants[peer], test),
                                  std::string(contestants[peer].name) + " " + test.GetName().toStdString()});
        }
    }
    return RunBenchmarks(argc, argv, ratios);
}
