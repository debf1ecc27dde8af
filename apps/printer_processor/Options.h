#pragma once

#include "foundation/core/GPathName.h"

#include <optional>

// What the call of the program asks for.
struct Options
{
    GPathName inbox;       // where jobs are copied to; empty: nowhere
    int count = 0;         // after how many messages to end; 0: never
    int milliseconds = 0;  // after what time to end; 0: never

    // Reads the call of this process. Gives the exit status where nothing is left to do: help was asked for,
    // or the call was wrong, which is told. Relative paths count from the current folder.
    static std::optional<int> Read(int argc, char** argv, Options& options);
};
