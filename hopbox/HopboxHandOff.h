#pragma once

#include "foundation/core/GString.h"

// Hands jobs to the running Hopbox processes, through the Printer Processor channel. Nothing is waited for
// and nothing started: who is not running when the processes are listed is not reached. Used on one thread.
namespace HopboxHandOff
{
enum class OwnProcess
{
    cLeaveOut,
    cInclude
};

// Sends a ticket for the job to every Hopbox process that can be reached, the own process left out.
// `jobLocation` is a native path or an encoded `file` URL. True when at least one process was sent the
// ticket; never raises.
bool SubmitJob(const GString& printerName, const GString& jobLocation);

// Sends every Hopbox process that can be reached the message without data. The same result.
bool NotifyHopboxProcesses(OwnProcess ownProcess);
}  // namespace HopboxHandOff
