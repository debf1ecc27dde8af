#pragma once

#include <functional>

// Runs steps in child processes of their own, as a program that has just been started would: nothing that ran
// before has left its traces in their memory.
namespace FreshProcess
{
struct Cost
{
    double seconds = 0;  // of the processor, in the step and in the system on its behalf
    double highest = 0;  // memory at its highest beyond that before the step, in kilobytes
    double kept = 0;     // memory that the step left in use
};

// The step's result stays in use until the child ends, so what it makes should not be destroyed within it.
Cost Run(const std::function<void()>& step);
}  // namespace FreshProcess
