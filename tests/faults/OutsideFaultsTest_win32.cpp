#include "Scenarios.h"
#include "tests/support/faults/OutsideFaults.h"

#include <gtest/gtest.h>

namespace
{
class OutsideFaults : public testing::TestWithParam<OutsideTarget>
{
};

constexpr const char* cRegistry =
    "AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs";
constexpr const char* cJournal = "in/.printer-processor/journal";

const OutsideTarget cTargets[] = {
    {GetDurableWrite, "a"},
    {GetRegistryChange, cRegistry},
    {GetDamagedRegistryChange, cRegistry},
    {GetSettingsFlush, "a.prefs"},
    {GetProjectSettings, "Project.hopbox"},
    {GetFileCopy, "b"},
    {GetFolderCopyAcrossVolumes, "from/sub/b", OutsideTarget::cRead},
    {GetFolderCopyAcrossVolumes, "other/to"},
    {GetFolderRenameAcrossVolumes, "from/sub/b", OutsideTarget::cRemoved},
    {GetFolderRenameAcrossVolumes, "other/to"},
    {GetArchiveCreation, "kept.zip"},
    {GetArchiveAddition, "kept.zip"},
    {GetArchiveAddition, "tree/noise", OutsideTarget::cRead},
    {GetExtraction, "out/noise"},
    {GetExtraction, "kept.zip", OutsideTarget::cRead},
    {GetPostAndAccept, cJournal},
    {GetCopyOfAcceptedJob, cJournal},
    {GetCopyOfAcceptedJob, "job/a.pdf", OutsideTarget::cRead},
};
}  // namespace

TEST_P(OutsideFaults, LeaveTheOldOrTheNewAndAreTold)
{
    RunOutsideFaults(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Targets, OutsideFaults, testing::ValuesIn(cTargets), [](const auto& each) {
    return std::string(each.param.scenario().name) + '_' + std::to_string(each.index);
});
