#pragma once

#include <chrono>
#include <ctime>

// The point in time, on the system's wall clock, at which a wait that begins now has to end: the form that
// pthread and semaphore calls take.
inline struct timespec GetDeadline(std::chrono::milliseconds timeout)
{
    using namespace std::chrono;
    const nanoseconds deadline = (system_clock::now() + timeout).time_since_epoch();
    const seconds whole = duration_cast<seconds>(deadline);
    struct timespec time = {};
    time.tv_sec = static_cast<time_t>(whole.count());
    time.tv_nsec = static_cast<long>((deadline - whole).count());
    return time;
}
