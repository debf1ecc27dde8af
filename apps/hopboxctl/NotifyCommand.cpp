#include "apps/hopboxctl/DeliveryOutput.h"
#include "apps/hopboxctl/HopboxCommands.h"

using HopboxHandOff::OwnProcess;

static int Run(const CliCall& call)
{
    const OwnProcess ownProcess = call.Has("own") ? OwnProcess::cInclude : OwnProcess::cLeaveOut;
    HopboxHandOff::Report report;
    const bool isSent = HopboxHandOff::NotifyHopboxProcesses(ownProcess, &report);
    return DeliveryOutput::Tell(report, isSent, QStringLiteral("No running Hopbox could be reached."));
}

const Command cNotifyCommand = {
    {"notify",
     "tell the running Hopboxes that something has changed",
     "",
     {},
     {{"own", "", "send the message to this process too, if it is a Hopbox"}},
     {{"hopboxctl notify", "Sends the message without data to every Hopbox that is running."}}},
    Run};
