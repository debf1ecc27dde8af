#include "Scenarios.h"

#include <gtest/gtest.h>

namespace
{
class Faults : public testing::TestWithParam<FaultScenario (*)()>
{
};

FaultScenario (*const cScenarios[])() = {
    GetRegistryChange,             //
    GetDamagedRegistryChange,      //
    GetSettingsFlush,              //
    GetProjectSettings,            //
    GetFolderCopyAcrossVolumes,    //
    GetFolderRenameAcrossVolumes,  //
    GetArchiveCreation,            //
    GetArchiveAddition,            //
    GetExtraction,                 //
    GetPostAndAccept,              //
    GetCopyOfAcceptedJob,          //
};
}  // namespace

TEST_P(Faults, EveryFailingCallLeavesTheOldOrTheNewAndIsTold)
{
    RunFaultScenario(GetParam()());
}

INSTANTIATE_TEST_SUITE_P(Scenarios, Faults, testing::ValuesIn(cScenarios),
                         [](const auto& each) { return std::string(each.param().name); });
