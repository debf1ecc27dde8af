#pragma once

#include "tests/support/faults/FaultDriver.h"

// The faults of a disk that another program, or a person, makes: what can be done on Windows, where no call
// of a task can be made to fail.
//
// Each fault is made once for each target of a scenario, and the task is run. What FaultScenario promises has
// to hold, and who is told of a failure learns the name of the file or of its folder, and the system's
// reason. A target that another program holds open for a moment, sharing only reading, must not make the task
// fail. Then the fault is undone, and the next run is done.
//
// On the line that tells what went wrong, the fault and the target come first.
struct OutsideTarget
{
    FaultScenario (*scenario)();
    const char* file;  // below the root; what is written need not be there
    enum Use
    {
        cWritten,
        cRead,
        cRemoved  // a moment is longer than the scenario tries
    } use = cWritten;
};

void RunOutsideFaults(const OutsideTarget& target);

// The same with the folder of the target, to which this user gets no access, or none for writing. See
// DeniedFolder::CanBe.
void RunInDeniedFolders(const OutsideTarget& target);

// The same on a volume with no space left, then with a little more each time, until the task is done. The
// temporary folder is on that volume. See FullVolume::GetFolder.
void RunOnFullVolumes(const OutsideTarget& target);
