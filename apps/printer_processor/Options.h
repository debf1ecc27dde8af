#pragma once

#include "apps/printer_processor/JobHook.h"
#include "foundation/ipc/GPPIPCAddresses.h"

// What the call of the program asks for.
struct Options
{
    GPathName inbox;               // where jobs are copied to; empty: nowhere
    std::optional<unsigned> mode;  // of what is copied; none: as the user's umask says
    JobCommand command;            // that is run for what is copied
    GPPIPCAddresses hopboxes;      // whose jobs are taken, by their names; none: all
    int count = 0;                 // after how many messages to end; 0: never
    int milliseconds = 0;          // after what time to end; 0: never

    // Reads the call of this process. Gives the exit status where nothing is left to do: help was asked for,
    // or the call was wrong, which is told. Relative paths count from the current folder.
    static std::optional<int> Read(int argc, char** argv, Options& options);
};
