#pragma once

#include "hopbox/HopboxHandOff.h"

// What `submit` and `notify` tell of a message's way to the Hopbox processes.
namespace DeliveryOutput
{
enum class Form
{
    Text,  // what failed, on standard error
    Json   // everything, on standard output
};

// `summary` is the first line of the text when the message reached nobody. Gives the exit status.
int Print(const HopboxHandOff::Report& report, bool isSent, const QString& summary, Form form);
}  // namespace DeliveryOutput
