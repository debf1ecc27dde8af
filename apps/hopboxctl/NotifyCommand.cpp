#include "apps/hopboxctl/DeliveryOutput.h"
#include "apps/hopboxctl/HopboxCommands.h"

static int Run(const CliCall&)
{
    HopboxHandOff::Report report;
    const bool isSent = HopboxHandOff::NotifyHopboxProcesses(HopboxHandOff::OwnProcess::cLeaveOut, &report);
    return DeliveryOutput::Tell(report, isSent, QStringLiteral("No running Hopbox could be reached."));
}

const Command cNotifyCommand = {
    {"notify",
     "tell the running Hopboxes that something has changed",
     "",
     {},
     {},
     {{"hopboxctl notify", "Sends the message without data to every Hopbox that is running."}}},
    Run};
