#pragma once

#include "foundation/core/GString.h"

#include <QElapsedTimer>

// Traces a part of the work: "enter" when the object is made, and "leave" with the time in milliseconds when
// it goes out of scope, also by an exception. Takes almost no time when no logger is installed. Keep it on
// the stack; used by one thread.
class GTraceBlock
{
public:
    explicit GTraceBlock(const GString& source);
    ~GTraceBlock();
    GTraceBlock(const GTraceBlock&) = delete;
    GTraceBlock& operator=(const GTraceBlock&) = delete;

private:
    GString mSource;
    QElapsedTimer mTimer;  // not started when there was no logger at the start
};
