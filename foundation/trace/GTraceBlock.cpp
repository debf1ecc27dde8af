#include "foundation/trace/GTraceBlock.h"

#include "foundation/trace/GTrace.h"

#include <exception>

GTraceBlock::GTraceBlock(const GString& source) : mSource(source)
{
    if (!GTrace::IsOn())
        return;
    GTrace::Debug(mSource, QStringLiteral("enter"));
    mTimer.start();
}

GTraceBlock::~GTraceBlock()
{
    if (!mTimer.isValid())
        return;
    const double milliseconds = static_cast<double>(mTimer.nsecsElapsed()) / 1e6;
    try {
        GTrace::Debug(mSource, QStringLiteral("leave, %1 ms").arg(milliseconds, 0, 'f', 3));
    } catch (const std::exception&) {
        GTrace::Debug(mSource, GString());  // no memory for the text: the line without it
    }
}
