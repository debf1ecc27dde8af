#pragma once

#include "foundation/core/GString.h"

#include <QElapsedTimer>

// Traces a part of the work: "enter" when it is made, "leave" with the time that has passed, in milliseconds,
// when it goes out of scope, whichever way. Costs next to nothing when no logger is installed. Kept on the
// stack, used by one thread.
class GTraceBlock
{
public:
    explicit GTraceBlock(const GString& source);
    ~GTraceBlock();
    GTraceBlock(const GTraceBlock&) = delete;
    GTraceBlock& operator=(const GTraceBlock&) = delete;

private:
    GString mSource;
    QElapsedTimer mTimer;  // not started when nobody listened at the start
};
