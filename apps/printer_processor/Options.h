#pragma once

#include "foundation/core/GPathName.h"

#include <QStringList>

#include <optional>

// What the call of the program asks for.
struct Options
{
    static constexpr const char* cUsage =
        "usage: PrinterProcessorWin.exe [--inbox DIR] [--count N] [--timeout SECONDS]";

    GPathName inbox;       // where jobs are copied to; empty: nowhere
    int count = 0;         // after how many messages to end; 0: never
    int milliseconds = 0;  // after what time to end; 0: never

    // None when the arguments are no call of this program. Relative paths count from the current folder.
    static std::optional<Options> Parse(const QStringList& arguments);
};
