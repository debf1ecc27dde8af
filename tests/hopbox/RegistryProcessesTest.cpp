#include "hopbox/HopboxRegistry.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <memory>
#include <vector>

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

TEST(HopboxRegistryProcesses, EntriesThatProcessesAddAtOnceAreAllThere)
{
    const Sandbox sandbox;
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (int number = 0; number < cProcesses; ++number) {
        processes.push_back(
            std::make_unique<ChildProcess>("AddEntries"_q, QStringList(QString::number(number))));
    }
    for (const auto& process : processes) {
        // It may take longer than one wait; the test's own time limit bounds it.
        int status = process->WaitForExit();
        while (status < 0 && process->IsRunning())
            status = process->WaitForExit();
        EXPECT_EQ(status, 0);
    }

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
