#pragma once

#include "hopbox/HopboxHandOff.h"

// What `submit` and `notify` tell of a message's way to the Hopbox processes.
namespace DeliveryOutput
{
// Says which processes it did not reach and why: a warning when others took it, else an error with `summary`
// before it. The answer in JSON has all processes. Gives the exit status.
int Tell(const HopboxHandOff::Report& report, bool isSent, const QString& summary);
}  // namespace DeliveryOutput
