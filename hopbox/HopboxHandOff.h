#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

// Hands jobs to the running Hopbox processes, through the Printer Processor channel. Nothing is waited for
// and nothing started: who is not running when the processes are listed is not reached. Used on one thread.
namespace HopboxHandOff
{
enum class OwnProcess
{
    cLeaveOut,
    cInclude
};

// What became of a message at one Hopbox process.
struct Delivery
{
    uint32_t process = 0;
    bool isSent = false;
    int32_t code = 0;  // of the error; 0 when it was sent
    GString reason;    // why it was not sent; empty when it was
};

// What became of a message. Whatever was not reached is in the log, too.
struct Report
{
    std::vector<Delivery> deliveries;  // in the order of the walk, as far as it came
    GString reason;                    // why there is none, or why the walk ended early; else empty
};

// Sends a ticket for the job to every Hopbox process that can be reached and takes jobs of the Hopbox of this
// printer name, the own process left out.
// `jobLocation` is a native path or an encoded `file` URL. True when at least one process was sent the
// ticket; never raises. `report`, where one is given, is filled anew.
[[nodiscard]] bool SubmitJob(const GString& printerName, const GString& jobLocation,
                             Report* report = nullptr);

// Sends every Hopbox process that can be reached the message without data. The same result.
[[nodiscard]] bool NotifyHopboxProcesses(OwnProcess ownProcess, Report* report = nullptr);
}  // namespace HopboxHandOff
