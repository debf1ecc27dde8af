#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

// Hands jobs to the running Hopbox processes, through the Printer Processor channel. It does not wait and
// starts no process: only the processes that run when the list is made are reached. For use on one thread.
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

// What became of a message. Processes that were not reached are in the log, too.
struct Report
{
    std::vector<Delivery> deliveries;  // one for each process that was tried, in this order
    GString reason;                    // why there is none, or why not all were tried; else empty
};

// Sends a ticket for the job to every other Hopbox process that can be reached and that takes jobs of the
// Hopbox with this printer name; never to this process.
// `jobLocation` is a native path or an encoded `file` URL. True when the ticket was sent to at least one
// process. Never raises. If `report` is given, its old content is replaced.
[[nodiscard]] bool SubmitJob(const GString& printerName, const GString& jobLocation,
                             Report* report = nullptr);

// Sends the message without data to every Hopbox process that can be reached. Result and `report` as above.
[[nodiscard]] bool NotifyHopboxProcesses(OwnProcess ownProcess, Report* report = nullptr);
}  // namespace HopboxHandOff
