#pragma once

#include "foundation/core/GSignal.h"

#include <cstdint>
#include <memory>

// What the periodic signal carries.
struct GTick
{
    uint64_t number;  // of ticks before this one since the loop was started
};

// The foundation's message loop: delivers delayed signals and ticks. It runs within Qt's event loop of the
// thread that starts it, also in the event loop of a modal window.
class GMessageLoop
{
public:
    // The message of the tick.
    static constexpr int32_t cTickMessage = 101;

    // The default time between two ticks, in milliseconds.
    static constexpr int cTickInterval = 100;

    // Start and stop the loop. Call them on one thread, and not from within a delivery. A loop that is
    // started twice goes on with the new interval. Messages that are queued while no loop is started wait for
    // the next one.
    static void Start(int interval = cTickInterval);
    static void Stop();

    // Emitted at each tick with cTickMessage. If ticks are late because the thread was busy, they are not
    // repeated. The signal lives as long as the process.
    static GSignal<GTick>& GetTickSignal();

    // Asks for a tick as soon as the loop's thread is free, besides those at the interval. From any thread;
    // does nothing while no loop is started.
    static void TickSoon();

    // Delivers the messages that are queued now, without waiting for the event loop. Messages that the
    // receivers queue meanwhile wait. Exceptions from receivers are logged. Called by the loop itself.
    static void DeliverQueued();

    // Asks for the delivery of a signal's delayed messages. From any thread; for GSignalBase.
    static void Queue(const std::weak_ptr<GSignalLink>& link);
};
