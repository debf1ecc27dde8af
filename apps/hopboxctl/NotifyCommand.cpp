#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "hopbox/HopboxHandOff.h"

using HopboxHandOff::OwnProcess;

static int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("own")});
    if (!arguments.AreValid() || !arguments.GetRest().isEmpty())
        return cExitUsage;
    const OwnProcess ownProcess = arguments.Has("own") ? OwnProcess::cInclude : OwnProcess::cLeaveOut;
    if (HopboxHandOff::NotifyHopboxProcesses(ownProcess))
        return cExitDone;
    PrintError(QStringLiteral("No running Hopbox could be reached."));
    return cExitFailed;
}

const Command cNotifyCommand = {"notify", "notify [--own]", Run};
