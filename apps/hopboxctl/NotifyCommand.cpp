#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DeliveryOutput.h"
#include "apps/hopboxctl/HopboxCommands.h"

using HopboxHandOff::OwnProcess;

static int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("own"), QStringLiteral("json")});
    if (!arguments.AreValid() || !arguments.GetRest().isEmpty())
        return cExitUsage;
    const OwnProcess ownProcess = arguments.Has("own") ? OwnProcess::cInclude : OwnProcess::cLeaveOut;
    HopboxHandOff::Report report;
    const bool isSent = HopboxHandOff::NotifyHopboxProcesses(ownProcess, &report);
    return DeliveryOutput::Print(
        report, isSent, QStringLiteral("No running Hopbox could be reached."),
        arguments.Has("json") ? DeliveryOutput::Form::Json : DeliveryOutput::Form::Text);
}

const Command cNotifyCommand = {"notify", "notify [--own] [--json]", Run};
