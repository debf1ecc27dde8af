#include "Scenarios.h"
#include "tests/support/faults/DeniedFolder.h"
#include "tests/support/faults/FullVolume.h"
#include "tests/support/faults/OutsideFaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{
class OutsideFaults : public testing::TestWithParam<OutsideTarget>
{
};

// The targets that are written.
class FullVolumes : public OutsideFaults
{
protected:
    FullVolumes() { qputenv("TMP", FullVolume::GetFolder().toLocal8Bit()); }
    ~FullVolumes() override { qputenv("TMP", mFolder); }

private:
    const QByteArray mFolder = qgetenv("TMP");
};

constexpr const char* cRegistry =
    "AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs";
constexpr const char* cProject = "AppData/Morvane/Hopbox/Cache/Settings/77378595/Project.hopbox";
constexpr const char* cPlacedJobOptions = "AppData/Adobe/Adobe PDF/Settings/Morvane_Hopbox_PDF.joboptions";
constexpr const char* cPlugInSettings =
    "AppData/Morvane Prefs Folder/Junctra_CC2019_64_InDesign/JunctraPlugins.pref";
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
    {GetExport, cProject, OutsideTarget::cRead},
    {GetExport, cPlacedJobOptions},
    {GetListOfTemporaries, cPlugInSettings},
};

std::string GetName(const testing::TestParamInfo<OutsideTarget>& each)
{
    return std::string(each.param.scenario().name) + '_' + std::to_string(each.index);
}

std::vector<OutsideTarget> GetWritten()
{
    std::vector<OutsideTarget> written;
    std::copy_if(std::begin(cTargets), std::end(cTargets), std::back_inserter(written),
                 [](const OutsideTarget& target) { return target.use == OutsideTarget::cWritten; });
    return written;
}
}  // namespace

TEST_P(OutsideFaults, LeaveTheOldOrTheNewAndAreTold)
{
    RunOutsideFaults(GetParam());
}

TEST_P(OutsideFaults, OfAFolderWithoutRightsAsWell)
{
    if (!DeniedFolder::CanBe())
        GTEST_SKIP() << "Nothing is denied to this user. tools/windows/as-user makes another.";
    RunInDeniedFolders(GetParam());
}

TEST_P(FullVolumes, LeaveTheOldOrTheNewAndAreTold)
{
    if (FullVolume::GetFolder().isEmpty())
        GTEST_SKIP() << "HOPBOX_SMALL_VOLUME names no volume to be filled. tools/windows/as-user makes one.";
    RunOnFullVolumes(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Targets, OutsideFaults, testing::ValuesIn(cTargets), GetName);
INSTANTIATE_TEST_SUITE_P(Targets, FullVolumes, testing::ValuesIn(GetWritten()), GetName);
