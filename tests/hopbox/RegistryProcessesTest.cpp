#include "hopbox/HopboxRegistry.h"

#include "foundation/prefs/GPrefFileModule.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <algorithm>
#include <random>
#include <thread>

static constexpr int cProcesses = 8;
static constexpr int cEntries = 100;  // of each

CHILD_ROLE(AddEntries)
{
    HopboxRegistryEntry entry;
    for (int number = 0; number < cEntries; ++number) {
        entry.pdfSettings = QString::number(number);
        if (!HopboxRegistry().AddEntry(arguments.first(), entry))
            return 1;
    }
    return 0;
}

CHILD_ROLE(AddEntriesToWhatIsCut)
{
    int damages = 0;
    for (int number = 0; number < cEntries; ++number) {
        HopboxRegistry registry;
        if (!registry.AddEntry(arguments.first(), HopboxRegistryEntry()))
            return 1;
        // Nothing that was not read whole is overwritten without a copy.
        if (const std::optional<PrefDamage>& damage = registry.GetDamage()) {
            ++damages;
            if (damage->kept.IsEmpty() && !damage->isEmpty)
                return 2;
        }
    }
    SayToParent(QByteArray::number(damages));
    return 0;
}

static int WaitForEnd(ChildProcess& process)
{
    // It may take longer than one wait; the test's own time limit bounds it.
    int status = process.WaitForExit();
    while (status < 0 && process.IsRunning())
        status = process.WaitForExit();
    return status;
}

// Cuts the file at a random place, as a failing disk or a foreign program would, without any lock. Gives what
// is left of it.
static QByteArray CutRandomly(const QString& path, std::mt19937& random)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || file.size() < 100)
        return {};
    file.resize(std::uniform_int_distribution<qint64>(1, file.size() - 40)(random));
    file.seek(0);
    return file.readAll();
}

TEST(HopboxRegistryProcesses, WhatIsCutUnderThemIsToldAndKept)
{
    const Sandbox sandbox;
    const auto processes = StartChildren("AddEntriesToWhatIsCut"_q, cProcesses);
    const QString path = HopboxRegistry::GetPathName().GetNativePath();
    std::mt19937 random(20260922);
    std::vector<QByteArray> cuts;
    const auto isAnyRunning = [&] {
        return std::any_of(processes.begin(), processes.end(),
                           [](const auto& each) { return each->IsRunning(); });
    };
    while (isAnyRunning()) {
        const QByteArray cut = CutRandomly(path, random);
        if (!cut.isEmpty())
            cuts.push_back(cut);
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution<int>(5, 60)(random)));
    }
    int damages = 0;
    for (const auto& process : processes) {
        EXPECT_EQ(WaitForEnd(*process), 0);
        damages += process->ReadLine().toInt();
    }
    EXPECT_GT(damages, 10) << "The cuts hardly met anybody.";
    int wholeCopies = 0;
    for (const char* age : {"", ".1", ".2"}) {
        const QByteArray kept = ReadFile(path + ".damaged"_q + QLatin1String(age));
        // A second cut may come while the first is being kept.
        EXPECT_TRUE(!kept.isEmpty() &&
                    std::any_of(cuts.begin(), cuts.end(),
                                [&](const QByteArray& cut) { return cut.startsWith(kept); }))
            << kept.size() << " bytes of " << age;
        wholeCopies += std::count(cuts.begin(), cuts.end(), kept) > 0 ? 1 : 0;
    }
    EXPECT_GE(wholeCopies, 2) << "What is kept is a part of what was cut.";
    const QDir folder(QFileInfo(path).path());
    EXPECT_EQ(folder.entryList({"*.damaged*"_q}).size(), 3);
    EXPECT_TRUE(folder.entryList({"*.new"_q}).isEmpty());
    EXPECT_TRUE(HopboxRegistry().AddEntry("last"_q, HopboxRegistryEntry()));
    EXPECT_FALSE(HopboxRegistry().GetDamage());
}

TEST(HopboxRegistryProcesses, EntriesThatProcessesAddAtOnceAreAllThere)
{
    const Sandbox sandbox;
    const auto processes = StartChildren("AddEntries"_q, cProcesses);
    for (const auto& process : processes)
        EXPECT_EQ(WaitForEnd(*process), 0);

    const HopboxRegistry registry;
    QStringList expected;
    QStringList found;
    for (int number = 0; number < cProcesses * cEntries; ++number)
        expected.append("%1 %2"_q.arg(number / cEntries).arg(number % cEntries));
    for (const GString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        found.append(record ? record->actorName + QLatin1Char(' ') + record->entry.pdfSettings : QString());
    }
    expected.sort();
    found.sort();
    EXPECT_EQ(found, expected);
}
