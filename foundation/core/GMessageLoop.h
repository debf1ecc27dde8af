#pragma once

#include "foundation/core/GSignal.h"

#include <cstdint>
#include <memory>

// What the periodic signal carries.
struct GTick
{
    uint64_t number;  // of ticks before this one since the loop was started
};

// The foundation's message loop: delivers delayed signals, and ticks. It runs within Qt's event loop of the
// thread that starts it, in a modal window's loop too.
class GMessageLoop
{
public:
    // The message of the tick.
    static constexpr int32_t cTickMessage = 101;

    // The default time between two ticks, in milliseconds.
    static constexpr int cTickInterval = 100;

    // Starts and stops the loop, on one thread and not from within a delivery. A loop that is started twice
    // goes on with the new interval. What is queued while none is started waits for the next one.
    static void Start(int interval = cTickInterval);
    static void Stop();

    // Emitted at each tick with cTickMessage. A tick that comes late, because the thread was busy, is not
    // made up for. Lives as long as the process.
    static GSignal<GTick>& GetTickSignal();

    // Asks for a tick as soon as the loop's thread is free, besides those at the interval. From any thread;
    // nothing while no loop is started.
    static void TickSoon();

    // Delivers what is queued now, without waiting for the event loop; what the receivers queue meanwhile
    // waits. What a receiver throws is logged. Called by the loop itself.
    static void DeliverQueued();

    // Asks for the delivery of a signal's delayed messages. From any thread; for GSignalBase.
    static void Queue(const std::weak_ptr<GSignalLink>& link);
};
